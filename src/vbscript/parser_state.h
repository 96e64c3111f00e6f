// The parser's inside: recursive descent, one token ahead. Its functions are grouped by topic into parser_*.cpp.
#pragma once

#include <cstdint>
#include <string_view>

#include "vbscript/arena.h"
#include "vbscript/ast.h"
#include "vbscript/declared_names.h"
#include "vbscript/lexer.h"
#include "vbscript/parser.h"

namespace pv::vbscript {

class Parser {
 public:
  Parser(std::string_view source, Arena& arena, ParseOptions options);

  const ast::Program* program();
  const ast::Expr* lone_expression();
  Position position() const { return token_.at; }

 private:
  // What encloses the statement that is being read.
  enum class BlockKind : std::uint8_t { kNone, kIf, kSelect, kFor, kDo, kWhile, kWith, kProcedure };

  class Nesting {  // counts how deep the parser stands within itself
   public:
    explicit Nesting(Parser& parser) : parser_(parser) {
      if (++parser_.depth_ > kMaxNestedSource) parser_.fail(1001);
    }
    ~Nesting() { --parser_.depth_; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

   private:
    Parser& parser_;
  };

  // Tokens (parser.cpp).
  bool is(TokenKind kind) const { return token_.kind == kind; }
  void advance() {
    after_colon_ = is(TokenKind::kColon);
    lexer_.next(token_);
  }
  TokenKind peek_kind() const;
  bool accept(TokenKind kind);
  void expect(TokenKind kind, std::int32_t error);
  [[noreturn]] void fail(std::int32_t error) const { throw CompileError{error, token_.at}; }
  [[noreturn]] void fail(std::int32_t error, Position at) const { throw CompileError{error, at}; }
  bool at_name() const { return is(TokenKind::kIdentifier) || token_.kind >= kFirstContextualWord; }
  std::string_view expect_name();
  bool at_statement_end() const;
  void expect_statement_end() const;
  void skip_separators();
  template <typename Node>
  Node* make(ast::StmtKind kind, Position at);
  template <typename Node>
  Node* make(ast::ExprKind kind, Position at);

  // Expressions (parser_expressions.cpp).
  ast::Expr* expression();
  ast::Expr* binary(ast::Expr* left, int lowest);
  ast::Expr* operand();
  ast::Expr* unary(ast::UnaryOp op, int lowest);
  ast::Expr* primary();
  ast::Expr* literal();
  ast::Expr* literal(ast::LiteralKind kind);
  ast::Expr* new_object();
  ast::Expr* parenthesised();
  ast::Expr* me();
  ast::Expr* name();
  ast::Expr* with_member();
  ast::Expr* member_of(ast::Expr* object);
  ast::Expr* index_of(ast::Expr* callee, ast::List<ast::Expr> arguments);
  ast::Expr* postfixes(ast::Expr* subject);
  ast::List<ast::Expr> parenthesised_arguments();
  ast::Expr* argument();
  bool at_operator() const;

  // Calls, assignments and the other simple statements (parser_statements.cpp).
  void statement(ast::Block& block);
  ast::Stmt* simple_statement();
  ast::Stmt* assignment_or_call();
  ast::Stmt* call_with(ast::Call* call, ast::Expr* callee, bool has_parentheses, ast::List<ast::Expr> in_parentheses);
  void arguments_after(ast::Call* call, ast::Expr* first);
  bool at_member_of_subject() const;
  ast::Stmt* finish_assignment(Position at, ast::Expr* target, bool set);
  ast::Stmt* call_statement();
  ast::Stmt* let_or_set_statement(bool set);
  ast::Stmt* erase_statement();
  ast::Stmt* on_error_statement();
  ast::Stmt* exit_statement();
  void option_statement();
  bool begins_statement() const;
  [[noreturn]] void fail_at_no_statement() const;

  // Statements that hold others (parser_blocks.cpp).
  void block(ast::Block& body, BlockKind kind);
  bool at_block_end(BlockKind kind) const;
  void refuse_other_end(BlockKind kind) const;
  void expect_end(TokenKind what, std::int32_t error);
  ast::Stmt* if_statement();
  void block_if(ast::If* statement, ast::IfBranch* branch);
  void inline_if(ast::If* statement, ast::IfBranch* branch);
  void inline_statements(ast::Block& body);
  bool at_inline_end() const;
  ast::IfBranch* next_branch(ast::If* statement);
  ast::Stmt* select_statement();
  ast::CaseBranch* case_branch();
  ast::Stmt* for_statement();
  ast::Stmt* for_each_statement(Position at);
  ast::Expr* loop_variable();
  void loop_body(ast::Block& body, const ast::Expr* variable, Position& next_at);
  ast::Stmt* do_statement();
  void do_test(ast::Do* loop, ast::DoTest while_test, ast::DoTest until_test);
  ast::Stmt* while_statement();
  ast::Stmt* with_statement();

  // Variables, constants and procedures (parser_declarations.cpp).
  void declare(std::string_view name, Position at, unsigned uses);
  ast::Stmt* dim_statement(Position at, ast::Visibility visibility);
  ast::Variable* variable();
  ast::List<ast::Expr> bounds();
  ast::Stmt* redim_statement();
  ast::ReDimTarget* redim_target();
  ast::Stmt* const_statement(Position at, ast::Visibility visibility);
  ast::ConstItem* constant();
  ast::Expr* constant_value();
  ast::Stmt* visibility_statement();
  ast::Procedure* procedure(Position at, ast::Visibility visibility, bool is_default);
  ast::ProcedureKind procedure_kind();
  void parameters(ast::Procedure* procedure);
  ast::Parameter* parameter();
  void procedure_body(ast::Procedure* procedure);
  void procedure_end(ast::ProcedureKind kind);

  // Classes (parser_classes.cpp).
  bool at_property() const;
  void class_statement();
  ast::Stmt* class_member();
  ast::Stmt* class_member_with_visibility();
  ast::Stmt* default_member(Position at, ast::Visibility visibility);
  void declare_member(const ast::Procedure& procedure, Position at);

  Lexer lexer_;
  Arena& arena_;
  Token token_;
  ast::Program* program_ = nullptr;
  int depth_ = 0;

  // The scopes of which names are known.
  DeclaredNames script_names_;
  DeclaredNames class_names_;
  DeclaredNames procedure_names_;

  // What is around the statement that is being read.
  struct OuterLoop {
    std::string_view variable;
    const OuterLoop* outer;
  };
  struct Surroundings {
    const OuterLoop* for_loops = nullptr;  // the innermost
    int do_loops = 0;
    int withs = 0;
    int inline_ifs = 0;  // on this line
  };
  Surroundings around_;
  const ast::Procedure* procedure_ = nullptr;
  ast::Class* class_ = nullptr;
  bool class_has_default_ = false;
  bool inside_class_;
  bool any_statement_ = false;  // "Option Explicit" is too late
  bool after_colon_ = false;
};

template <typename Node>
Node* Parser::make(ast::StmtKind kind, Position at) {
  Node* const node = arena_.make<Node>();
  node->kind = kind;
  node->at = at;
  return node;
}

template <typename Node>
Node* Parser::make(ast::ExprKind kind, Position at) {
  Node* const node = arena_.make<Node>();
  node->kind = kind;
  node->at = at;
  return node;
}

}  // namespace pv::vbscript
