// The compiler at work. One source file a topic: scopes, expressions, calls, assignments, statements, loops, classes.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "vbscript/ast.h"
#include "vbscript/bytecode.h"
#include "vbscript/compiler.h"
#include "vbscript/machine.h"

namespace pv::vbscript {

// What a name means at a place in the program.
struct Resolved {
  enum class Kind : std::uint8_t {
    kVariable,   // `place`
    kConstant,   // `place`
    kAlias,      // register `place`, which must be loaded first: load_alias
    kProcedure,  // the script's
    kMember,     // property or method of the class
    kHost,
    kBuiltin,
    kSpecial,
    kClass,
  };
  enum class Special : std::uint8_t { kEval, kExecute, kExecuteGlobal, kGetRef, kRandomize };

  Kind kind;
  Operand place = kNoOperand;
  Symbol* symbol = nullptr;
  const Member* member = nullptr;
  const Builtin* builtin = nullptr;
  Special special = Special::kEval;
};

// Whether an expression may give an object, or the value of its default property instead.
enum class Want : std::uint8_t { kAnything, kValue };

class Compiler {
 public:
  Compiler(Machine& machine, Unit& unit, std::string_view source, const Surroundings* outer);
  ~Compiler();  // without commit(): gives the symbols back their meanings

  void program(const ast::Program& program);
  void expression(const ast::Expr& expression);
  void commit();

 private:
  struct CallSite {
    const ast::List<ast::Expr>* arguments = nullptr;
    Want want = Want::kAnything;
    bool statement = false;  // nobody wants the result
    std::uint8_t flags() const;
  };
  struct Arguments {
    Operand window;
    std::uint16_t count;
    std::vector<Operand> locks;
  };
  struct Enclosing {  // a loop or With around the statement
    enum class Kind : std::uint8_t { kFor, kForEach, kDo, kWhileWend, kWith } kind;
    Operand object = kNoOperand;  // to be emptied by who jumps out
    std::vector<std::size_t> exits = {};
  };

  // compiler.cpp: instructions, registers, constants
  void begin(Code& code);
  void finish();
  std::size_t emit(Op op, Operand a = 0, Operand b = 0, Operand c = 0, int extra = 0);
  void emit_index(Op op, Operand a, std::size_t index);
  void emit_data(std::uint16_t arguments, std::size_t index, std::uint8_t flags);
  std::size_t here() const { return instructions_.size(); }
  void set_distance(std::size_t at, std::size_t target);
  void set_distance_here(std::size_t at) { set_distance(at, here()); }
  void mark(Position at, bool resumes = true);
  Operand temporary();
  Operand temporaries(std::size_t count);
  // Of the statement at hand: no register of an enclosing With or loop.
  bool is_temporary(Operand place) const;
  Operand constant(const Value& value);
  std::size_t name_index(Symbol* symbol);
  std::size_t builtin_index(const Builtin* builtin);
  std::size_t method_index(const Code* code);
  Symbol* intern(std::string_view name) { return machine_.symbols().intern(name); }
  void raise_at_run_time(std::int32_t number, Symbol* name);
  [[noreturn]] void too_much() const;

  // compiler_scopes.cpp: names
  Resolved resolve(Symbol* symbol);
  bool resolve_outer(Symbol* symbol, Resolved& found);
  Resolved resolve_script_level(Symbol* symbol);
  Resolved undeclared(Symbol* symbol);
  Resolved implicit_variable(Symbol* symbol);
  Resolved global_variable(Symbol* symbol);
  Resolved alias(Symbol* symbol);
  Operand load(const Resolved& name);  // of a variable, constant or alias
  Operand new_variable(Symbol* symbol, bool is_alias = false);
  Operand outer_variable(Symbol* symbol, bool in_scope, std::size_t index);
  void set_local(Symbol* symbol, Operand place);
  bool is_own_result(const Resolved& name) const;
  Resolved own_procedure(const Resolved& result);
  void remember(Symbol* symbol);
  void declare_script_level(const ast::Block& block);
  void declare_global_name(std::string_view name, Position at, Meaning meaning);
  void declare_dim(const ast::Dim& dim);
  void declare_const(const ast::Const& constants);
  void declare_locals(const ast::Block& block);
  template <typename Visit>
  void for_each_inner_block(const ast::Stmt& statement, Visit visit);
  bool at_script_level() const { return code_->is_script_level; }

  // compiler_classes.cpp: procedures and classes
  Code* new_code(const ast::Procedure& procedure, const Class* owner);
  void declare_procedure(const ast::Procedure& procedure);
  void declare_class(const ast::Class& declared);
  void declare_member(Class& made, const ast::Stmt& statement, std::uint32_t stamp);
  Member& member_of(Class& made, Symbol* name, std::uint32_t stamp);
  void index_members(Class& made);
  void compile_procedure(const ast::Procedure& procedure, Code& code);
  void compile_pending();

  // compiler_expressions.cpp
  // The value lies where the result says; `into` is where it would be wanted, kNoOperand: nowhere in particular.
  Operand compile(const ast::Expr& expression, Want want, Operand into = kNoOperand);
  // Puts the value there. `into` is a temporary or a variable that may be assigned to.
  void compile_into(const ast::Expr& expression, Want want, Operand into);
  Value literal_value(const ast::Expr& expression);
  Operand unary(const ast::Unary& unary, Operand into);
  Operand binary(const ast::Binary& top, Operand into);
  Operand left_operand(const ast::Expr& left, std::span<const ast::Expr* const> rights, Operand into);
  Operand concatenate(std::span<const ast::Binary* const> parts, Operand left, Operand into);
  Operand result_place(Operand into) { return into == kNoOperand ? temporary() : into; }
  bool may_run_code(const ast::Expr& expression);
  std::size_t jump_unless(const ast::Expr& condition);
  std::size_t jump_if(const ast::Expr& condition);
  std::size_t conditional_jump(const ast::Expr& condition, Op first_comparison, Op other);

  // compiler_calls.cpp
  Operand chain(const ast::Expr& outermost, Want want, Operand into);
  Operand call_name(Symbol* symbol, const CallSite& site, Operand into);
  Operand call_resolved(const Resolved& name, const CallSite& site, Operand into);
  Operand call_script(Op op, std::size_t index, const CallSite& site, Operand into, bool by_reference);
  Operand call_builtin(const Builtin& builtin, const CallSite& site, Operand into);
  Operand call_special(const Resolved& name, const CallSite& site, Operand into);
  Operand call_member(const Member& member, const CallSite& site, Operand into);
  Operand use_member(Operand subject, Symbol* name, const CallSite& site, Operand into);
  Operand use_index(Operand subject, const CallSite& site, Operand into);
  Arguments arguments(const ast::List<ast::Expr>* list, bool by_reference, std::size_t spare = 0);
  void argument(const ast::Expr& argument, Operand slot, Operand lock, bool by_reference);
  const ast::Index* element_of_variable(const ast::Expr& argument, Resolved& variable);
  void call_statement(const ast::Call& call);

  // compiler_assignments.cpp
  void assign(const ast::Assign& assign);
  void assign_name(const ast::Name& target, const ast::Assign& assign);
  void assign_index(const ast::Index& target, const ast::Assign& assign);
  void assign_member(const ast::Member& target, const ast::List<ast::Expr>* arguments, const ast::Assign& assign);
  void assign_own_member(const Member& member, Symbol* name, const ast::List<ast::Expr>* arguments,
                         const ast::Assign& assign);
  void store_element(Operand subject, const ast::Index& target, const ast::Assign& assign);
  void redim(const ast::ReDim& statement);
  void erase(const ast::Erase& statement);
  // A variable or element that a statement changes as a whole; a reference in a register for elements.
  Operand changed_place(const ast::Expr& target);

  // compiler_statements.cpp
  void block(const ast::Block& statements);
  void statement(const ast::Stmt& statement);
  void if_statement(const ast::If& statement);
  void select_statement(const ast::Select& statement);
  void with_statement(const ast::With& statement);
  void exit_statement(const ast::Exit& statement);

  // compiler_loops.cpp
  void for_statement(const ast::For& statement);
  void for_each_statement(const ast::ForEach& statement);
  void do_statement(const ast::Do& statement);
  void close_loop();

  Machine& machine_;
  Unit& unit_;
  const Surroundings* outer_;

  // Of the whole text
  struct Pending {
    const ast::Procedure* procedure;
    Code* code;
  };
  std::vector<Pending> pending_;
  std::vector<Symbol> undo_values_;
  std::vector<Symbol*> undo_;
  struct OldConstant {
    std::uint32_t global;
    Value value;
  };
  std::vector<OldConstant> undo_constants_;
  bool explicit_names_ = false;
  bool may_execute_;  // the text mentions Execute
  std::uint32_t text_stamp_;

  // Of the code that is being compiled
  Code* code_ = nullptr;
  std::uint32_t stamp_ = 0;
  Position at_;
  std::size_t next_temporary_ = kFirstTemporary;
  std::size_t last_temporary_ = kFirstTemporary;
  std::size_t statement_temporaries_ = kFirstTemporary;
  std::vector<Instruction> instructions_;
  std::vector<Value> constants_;
  std::vector<StatementMark> marks_;
  std::vector<Enclosing> enclosing_;
};

}  // namespace pv::vbscript
