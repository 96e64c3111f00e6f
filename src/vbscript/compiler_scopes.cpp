// What names mean: the procedure's variables, the class's members, what the script has outside procedures, and what
// every script has.
#include <algorithm>

#include "vbscript/compiler_state.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

struct SpecialName {
  std::string_view name;
  Resolved::Special special;
};
constexpr SpecialName kSpecialNames[] = {
    {"eval", Resolved::Special::kEval},
    {"execute", Resolved::Special::kExecute},
    {"executeglobal", Resolved::Special::kExecuteGlobal},
    {"getref", Resolved::Special::kGetRef},
    {"randomize", Resolved::Special::kRandomize},
};

Resolved at_place(Resolved::Kind kind, Symbol* symbol, Operand place) {
  Resolved resolved{kind};
  resolved.symbol = symbol;
  resolved.place = place;
  return resolved;
}

Resolved of_kind(Resolved::Kind kind, Symbol* symbol) {
  return at_place(kind, symbol, kNoOperand);
}

}  // namespace

void Compiler::set_local(Symbol* symbol, Operand place) {
  symbol->local_stamp = stamp_;
  symbol->local_operand = place;
}

Operand Compiler::new_variable(Symbol* symbol, bool is_alias) {
  const std::size_t index = code_->variable_names.size();
  if (index >= kFirstTemporary) too_much();
  code_->variable_names.push_back({symbol, is_alias});
  return operand(OperandKind::kRegister, index);
}

Operand Compiler::outer_variable(Symbol* symbol, bool in_scope, std::size_t index) {
  const Operand place = new_variable(symbol, true);
  code_->outer_names.push_back(
      {static_cast<std::uint16_t>(index_of(place)), in_scope, static_cast<std::uint16_t>(index)});
  set_local(symbol, place);
  return place;
}

// Execute and Eval within a procedure see its variables and those that Execute made there before.
bool Compiler::resolve_outer(Symbol* symbol, Resolved& found) {
  const Code& code = *outer_->code;
  for (std::size_t i = 0; i < code.variable_names.size(); ++i) {
    if (code.variable_names[i].symbol != symbol || code.variable_names[i].is_alias) continue;
    found = at_place(Resolved::Kind::kVariable, symbol, outer_variable(symbol, false, i));
    return true;
  }
  for (const Code::LocalConstant& local : code.local_constants) {
    if (local.name != symbol) continue;
    found = at_place(Resolved::Kind::kConstant, symbol, constant(code.constants[local.constant]));
    return true;
  }
  const auto& variables = outer_->scope->variables;
  for (std::size_t i = 0; i < variables.size(); ++i) {
    if (variables[i].symbol != symbol) continue;
    found = at_place(Resolved::Kind::kVariable, symbol, outer_variable(symbol, true, i));
    return true;
  }
  return false;
}

Resolved Compiler::global_variable(Symbol* symbol) {
  if (!Machine::is_near(symbol->global)) return alias(symbol);
  return at_place(Resolved::Kind::kVariable, symbol, operand(OperandKind::kGlobal, symbol->global));
}

// A variable that no operand reaches: a register is kept for a reference to it.
Resolved Compiler::alias(Symbol* symbol) {
  for (std::size_t i = 0; i < code_->variable_names.size(); ++i) {
    const Code::VariableName& known = code_->variable_names[i];
    if (known.symbol == symbol && known.is_alias) {
      return at_place(Resolved::Kind::kAlias, symbol, operand(OperandKind::kRegister, i));
    }
  }
  return at_place(Resolved::Kind::kAlias, symbol, new_variable(symbol, true));
}

Operand Compiler::load(const Resolved& name) {
  if (name.kind != Resolved::Kind::kAlias) return name.place;
  if (name.symbol->meaning == Meaning::kVariable) {
    emit_index(Op::kGlobal, name.place, name.symbol->global);
  } else {
    emit_index(Op::kLookUp, name.place, name_index(name.symbol));
  }
  return name.place;
}

Resolved Compiler::resolve_script_level(Symbol* symbol) {
  switch (symbol->meaning) {
    case Meaning::kVariable:
      // Execute may still make something of that name that belongs to the procedure.
      if (symbol->is_implicit && may_execute_ && !at_script_level() && !code_->is_dynamic) {
        return implicit_variable(symbol);
      }
      return global_variable(symbol);
    case Meaning::kConstant:
      return at_place(Resolved::Kind::kConstant, symbol, constant(machine_.global(symbol->global)));
    case Meaning::kProcedure:
      return of_kind(Resolved::Kind::kProcedure, symbol);
    case Meaning::kClass:
      return of_kind(Resolved::Kind::kClass, symbol);
    case Meaning::kHostFunction:
      return of_kind(Resolved::Kind::kHost, symbol);
    case Meaning::kNone:
      break;
  }
  for (const SpecialName& special : kSpecialNames) {
    if (special.name != symbol->name) continue;
    Resolved resolved = of_kind(Resolved::Kind::kSpecial, symbol);
    resolved.special = special.special;
    return resolved;
  }
  if (symbol->name == "err") return at_place(Resolved::Kind::kConstant, symbol, constant(machine_.err_object()));
  if (const Builtin* builtin = find_builtin(symbol->name); builtin != nullptr) {
    Resolved resolved = of_kind(Resolved::Kind::kBuiltin, symbol);
    resolved.builtin = builtin;
    return resolved;
  }
  if (Value value; find_constant(machine_.heap(), symbol->name, value)) {
    return at_place(Resolved::Kind::kConstant, symbol, constant(value));
  }
  return undeclared(symbol);
}

// A variable comes into being where its name is first used, unless Option Explicit forbids it.
Resolved Compiler::undeclared(Symbol* symbol) {
  if (explicit_names_) return alias(symbol);
  if (at_script_level()) {
    remember(symbol);
    symbol->meaning = Meaning::kVariable;
    symbol->is_implicit = true;
    if (symbol->global == kNoGlobal) symbol->global = machine_.new_global();
    return global_variable(symbol);
  }
  if (code_->is_dynamic) {
    outer_->scope->variables.push_back({symbol, std::make_unique<Value>()});
    return at_place(Resolved::Kind::kVariable, symbol,
                    outer_variable(symbol, true, outer_->scope->variables.size() - 1));
  }
  return implicit_variable(symbol);
}

// Of the procedure, unless there is one outside procedures when it begins.
Resolved Compiler::implicit_variable(Symbol* symbol) {
  const Operand place = new_variable(symbol);
  code_->implicit_variables.push_back(static_cast<std::uint16_t>(index_of(place)));
  set_local(symbol, place);
  return at_place(Resolved::Kind::kVariable, symbol, place);
}

Resolved Compiler::resolve(Symbol* symbol) {
  if (symbol->local_stamp == stamp_) {
    const auto kind = kind_of(symbol->local_operand) == OperandKind::kConstant ? Resolved::Kind::kConstant
                                                                               : Resolved::Kind::kVariable;
    return at_place(kind, symbol, symbol->local_operand);
  }
  if (Resolved found{}; code_->is_dynamic && resolve_outer(symbol, found)) return found;
  if (code_->owner != nullptr) {
    if (const Member* member = code_->owner->find(symbol); member != nullptr) {
      if (member->is_field) {
        return at_place(Resolved::Kind::kVariable, symbol, operand(OperandKind::kField, member->field));
      }
      Resolved resolved = of_kind(Resolved::Kind::kMember, symbol);
      resolved.member = member;
      return resolved;
    }
  }
  return resolve_script_level(symbol);
}

// Within a function its name is the result, but with arguments it is a call.
bool Compiler::is_own_result(const Resolved& name) const {
  if (name.kind != Resolved::Kind::kVariable || name.symbol == nullptr) return false;
  if (code_->is_dynamic) return outer_->code->name == name.symbol && outer_->code->is_function();
  return code_->name == name.symbol && name.place == code_->result;
}

Resolved Compiler::own_procedure(const Resolved& result) {
  if (code_->owner == nullptr) return of_kind(Resolved::Kind::kProcedure, result.symbol);
  Resolved resolved = of_kind(Resolved::Kind::kMember, result.symbol);
  resolved.member = code_->owner->find(result.symbol);
  return resolved;
}

void Compiler::declare_global_name(std::string_view name, Position at, Meaning meaning) {
  Symbol* symbol = intern(name);
  const bool again = symbol->declared_stamp == text_stamp_;
  // The last of several procedures of one name counts; everything else may be there once.
  if (again && (meaning != Meaning::kProcedure || symbol->meaning != Meaning::kProcedure)) {
    throw CompileError{1041, at};
  }
  remember(symbol);
  symbol->declared_stamp = text_stamp_;
  const bool has_value = meaning == Meaning::kVariable || meaning == Meaning::kConstant;
  if (has_value && symbol->global == kNoGlobal) symbol->global = machine_.new_global();
  symbol->meaning = meaning;
  symbol->is_implicit = false;
}

void Compiler::declare_dim(const ast::Dim& dim) {
  for (const ast::Variable* variable = dim.variables.first; variable != nullptr; variable = variable->next) {
    Symbol* symbol = intern(variable->name);
    Operand place = kNoOperand;
    if (at_script_level()) {
      declare_global_name(variable->name, variable->at, Meaning::kVariable);
      if (!variable->is_array) continue;
      place = load(global_variable(symbol));
    } else if (code_->is_dynamic) {
      Resolved found{};
      place = symbol->local_stamp == stamp_  ? symbol->local_operand
              : resolve_outer(symbol, found) ? found.place
                                             : kNoOperand;
      if (place != kNoOperand && kind_of(place) == OperandKind::kConstant) throw CompileError{1041, variable->at};
      if (place == kNoOperand) {
        outer_->scope->variables.push_back({symbol, std::make_unique<Value>()});
        place = outer_variable(symbol, true, outer_->scope->variables.size() - 1);
      }
    } else {
      place = new_variable(symbol);
      set_local(symbol, place);
    }
    if (!variable->is_array) continue;
    mark(dim.at);
    const std::size_t kept = next_temporary_;
    const Operand window = temporaries(variable->bounds.size + std::size_t{variable->bounds.empty()});
    std::size_t at = 0;
    for (const ast::Expr* bound = variable->bounds.first; bound != nullptr; bound = bound->next) {
      compile_into(*bound, Want::kValue, behind(window, at++));
    }
    if (variable->bounds.size > kMaxArrayDimensions) too_much();
    emit(Op::kDimArray, place, window, 0, static_cast<int>(variable->bounds.size));
    next_temporary_ = kept;
  }
}

void Compiler::declare_const(const ast::Const& constants) {
  for (const ast::ConstItem* item = constants.items.first; item != nullptr; item = item->next) {
    at_ = item->at;
    Value value = literal_value(*item->value);
    Symbol* symbol = intern(item->name);
    if (at_script_level()) {
      declare_global_name(item->name, item->at, Meaning::kConstant);
      machine_.global(symbol->global).swap(value);
      undo_constants_.push_back({symbol->global, std::move(value)});
      continue;
    }
    const Operand place = constant(value);
    if (kind_of(place) != OperandKind::kConstant) too_much();
    set_local(symbol, place);
    code_->local_constants.push_back({symbol, static_cast<std::uint16_t>(index_of(place))});
  }
}

template <typename Visit>
void Compiler::for_each_inner_block(const ast::Stmt& statement, Visit visit) {
  switch (statement.kind) {
    case ast::StmtKind::kIf:
      for (auto* branch = static_cast<const ast::If&>(statement).branches.first; branch; branch = branch->next) {
        visit(branch->body);
      }
      break;
    case ast::StmtKind::kSelect:
      for (auto* branch = static_cast<const ast::Select&>(statement).cases.first; branch; branch = branch->next) {
        visit(branch->body);
      }
      break;
    case ast::StmtKind::kFor:
      visit(static_cast<const ast::For&>(statement).body);
      break;
    case ast::StmtKind::kForEach:
      visit(static_cast<const ast::ForEach&>(statement).body);
      break;
    case ast::StmtKind::kDo:
      visit(static_cast<const ast::Do&>(statement).body);
      break;
    case ast::StmtKind::kWith:
      visit(static_cast<const ast::With&>(statement).body);
      break;
    default:
      break;
  }
}

// Declarations count for the whole procedure, whichever block they stand in.
void Compiler::declare_locals(const ast::Block& block) {
  for (const ast::Stmt* statement = block.first; statement != nullptr; statement = statement->next) {
    if (statement->kind == ast::StmtKind::kDim) declare_dim(static_cast<const ast::Dim&>(*statement));
    if (statement->kind == ast::StmtKind::kConst) declare_const(static_cast<const ast::Const&>(*statement));
    for_each_inner_block(*statement, [this](const ast::Block& inner) { declare_locals(inner); });
  }
}

void Compiler::declare_script_level(const ast::Block& block) {
  for (const ast::Stmt* statement = block.first; statement != nullptr; statement = statement->next) {
    if (statement->kind == ast::StmtKind::kProcedure) declare_procedure(static_cast<const ast::Procedure&>(*statement));
    if (statement->kind == ast::StmtKind::kClass) declare_class(static_cast<const ast::Class&>(*statement));
  }
  declare_locals(block);
}

}  // namespace pv::vbscript
