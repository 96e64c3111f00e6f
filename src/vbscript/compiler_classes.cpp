// Procedures and classes: what they declare, and their code.
#include "vbscript/compiler_state.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

bool gives_result(ast::ProcedureKind kind) {
  return kind == ast::ProcedureKind::kFunction || kind == ast::ProcedureKind::kPropertyGet;
}

const Code*& slot_for(Member& member, ast::ProcedureKind kind) {
  if (kind == ast::ProcedureKind::kPropertyLet) return member.let;
  if (kind == ast::ProcedureKind::kPropertySet) return member.set;
  return member.get;
}

}  // namespace

Code* Compiler::new_code(const ast::Procedure& procedure, const Class* owner) {
  unit_.procedures.push_back(std::make_unique<Code>());
  Code* code = unit_.procedures.back().get();
  at_ = procedure.at;
  code->name = intern(procedure.name);
  code->kind = procedure.what;
  code->owner = owner;
  code->is_private = procedure.visibility == ast::Visibility::kPrivate;
  code->explicit_names = explicit_names_;
  if (procedure.parameters.size >= kFirstTemporary) too_much();
  code->parameters = static_cast<std::uint16_t>(procedure.parameters.size);
  bool any_by_value = false;
  for (const ast::Parameter* p = procedure.parameters.first; p != nullptr; p = p->next) any_by_value |= p->by_value;
  if (any_by_value) {
    for (const ast::Parameter* p = procedure.parameters.first; p != nullptr; p = p->next) {
      code->by_value.push_back(p->by_value ? 1 : 0);
    }
  }
  // Known before its body is compiled: callers ask whether it is a function.
  if (gives_result(procedure.what)) code->result = operand(OperandKind::kRegister, code->parameters);
  pending_.push_back({&procedure, code});
  return code;
}

void Compiler::declare_procedure(const ast::Procedure& procedure) {
  Code* code = new_code(procedure, nullptr);
  if (code_->is_dynamic) {  // a variable of the procedure that Execute stands in, filled by commit
    auto& variables = outer_->scope->variables;
    Resolved found{};
    if (!resolve_outer(code->name, found)) variables.push_back({code->name, std::make_unique<Value>()});
    return;
  }
  declare_global_name(procedure.name, procedure.at, Meaning::kProcedure);
  code->name->procedure = code;
}

// Names that were variables until now call the new procedures from now on.
void Compiler::commit() {
  undo_.clear();
  undo_constants_.clear();
  for (const Pending& pending : pending_) {
    const Code& code = *pending.code;
    if (code.owner != nullptr) continue;
    if (outer_ == nullptr) {
      if (code.name->global != kNoGlobal) machine_.global(code.name->global) = machine_.procedure_reference(code);
      continue;
    }
    for (const DynamicScope::Variable& variable : outer_->scope->variables) {
      if (variable.symbol == code.name) *variable.value = machine_.procedure_reference(code);
    }
    const auto& names = outer_->code->variable_names;
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (names[i].symbol != code.name || names[i].is_alias) continue;
      outer_->registers[i] = machine_.procedure_reference(code);
    }
  }
  machine_.globals_changed();
}

Member& Compiler::member_of(Class& made, Symbol* name, std::uint32_t stamp) {
  if (name->local_stamp == stamp) return made.members[name->local_operand];
  if (made.members.size() >= 0xFFFF) too_much();
  name->local_stamp = stamp;
  name->local_operand = static_cast<std::uint16_t>(made.members.size());
  made.members.emplace_back();
  made.members.back().name = name;
  return made.members.back();
}

void Compiler::declare_member(Class& made, const ast::Stmt& statement, std::uint32_t stamp) {
  at_ = statement.at;
  if (statement.kind == ast::StmtKind::kProcedure) {
    const auto& procedure = static_cast<const ast::Procedure&>(statement);
    Code* code = new_code(procedure, &made);
    slot_for(member_of(made, code->name, stamp), procedure.what) = code;
    if (code->name->name == "class_initialize") made.initialize = code;
    if (code->name->name == "class_terminate") made.terminate = code;
    return;
  }
  const auto& dim = static_cast<const ast::Dim&>(statement);
  for (const ast::Variable* variable = dim.variables.first; variable != nullptr; variable = variable->next) {
    if (made.fields >= kOperandIndices - 1) too_much();
    Member& member = member_of(made, intern(variable->name), stamp);
    member.is_field = true;
    member.field_is_private = dim.visibility == ast::Visibility::kPrivate;
    member.field = made.fields++;
    if (!variable->is_array) continue;
    made.arrays.push_back({member.field, {}});
    for (const ast::Expr* bound = variable->bounds.first; bound != nullptr; bound = bound->next) {
      made.arrays.back().bounds.push_back(literal_value(*bound).number());
    }
  }
}

void Compiler::index_members(Class& made) {
  std::size_t size = 4;
  while (size < made.members.size() * 2) size *= 2;
  made.buckets.assign(size, 0);
  for (std::size_t i = 0; i < made.members.size(); ++i) {
    std::size_t at = made.members[i].name->hash & (size - 1);
    while (made.buckets[at] != 0) at = (at + 1) & (size - 1);
    made.buckets[at] = static_cast<std::uint16_t>(i + 1);
  }
}

void Compiler::declare_class(const ast::Class& declared) {
  unit_.classes.push_back(std::make_unique<Class>());
  Class& made = *unit_.classes.back();
  made.name = intern(declared.name);
  Symbol* default_name = nullptr;
  const std::uint32_t stamp = machine_.next_stamp();
  for (const ast::Stmt* member = declared.members.first; member != nullptr; member = member->next) {
    declare_member(made, *member, stamp);
    if (member->kind != ast::StmtKind::kProcedure) continue;
    const auto& procedure = static_cast<const ast::Procedure&>(*member);
    if (procedure.is_default) default_name = intern(procedure.name);
  }
  index_members(made);
  if (default_name != nullptr) made.default_member = made.find(default_name);
  if (!at_script_level()) {  // a class of a procedure's Execute is everybody's
    remember(made.name);
    made.name->meaning = Meaning::kClass;
  } else {
    declare_global_name(declared.name, declared.at, Meaning::kClass);
  }
  made.name->script_class = &made;
}

void Compiler::compile_procedure(const ast::Procedure& procedure, Code& code) {
  begin(code);
  for (const ast::Parameter* p = procedure.parameters.first; p != nullptr; p = p->next) {
    Symbol* symbol = intern(p->name);
    set_local(symbol, new_variable(symbol));
  }
  if (gives_result(procedure.what)) {
    const Operand result = new_variable(code.name);
    // A parameter of the function's own name hides the result.
    if (code.name->local_stamp != stamp_) set_local(code.name, result);
  }
  declare_locals(procedure.body);
  block(procedure.body);
  mark(procedure.end_at);
  emit(Op::kReturn);
  finish();
}

void Compiler::compile_pending() {
  for (std::size_t i = 0; i < pending_.size(); ++i) compile_procedure(*pending_[i].procedure, *pending_[i].code);
}

}  // namespace pv::vbscript
