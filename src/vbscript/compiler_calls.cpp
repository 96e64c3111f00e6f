// Names with and without arguments, members, elements: everything that a call, an array element or a default property
// may turn out to be.
#include "vbscript/compiler_state.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

std::uint32_t count_of(const ast::List<ast::Expr>* list) {
  return list == nullptr ? 0 : list->size;
}

constexpr auto code_of(ErrorCode error) {
  return static_cast<std::int32_t>(error);
}

}  // namespace

std::uint8_t Compiler::CallSite::flags() const {
  if (statement) return kDiscard | kStatement;
  return want == Want::kValue ? kWantValue : 0;
}

// a(1) where `a` is a variable: an array's element is passed by reference.
const ast::Index* Compiler::element_of_variable(const ast::Expr& argument, Resolved& variable) {
  if (argument.kind != ast::ExprKind::kIndex) return nullptr;
  const auto& index = static_cast<const ast::Index&>(argument);
  if (index.callee->kind != ast::ExprKind::kName || index.arguments.empty()) return nullptr;
  variable = resolve(intern(static_cast<const ast::Name&>(*index.callee).name));
  if (variable.kind != Resolved::Kind::kVariable && variable.kind != Resolved::Kind::kAlias) return nullptr;
  return is_own_result(variable) ? nullptr : &index;
}

void Compiler::argument(const ast::Expr& argument, Operand slot, Operand lock, bool by_reference) {
  Resolved variable{};
  if (by_reference && lock != kNoOperand) {
    const ast::Index* element = element_of_variable(argument, variable);
    const std::size_t kept = next_temporary_;
    const Arguments indices = arguments(&element->arguments, false);
    emit(Op::kArgumentElement, slot, load(variable), indices.window);
    emit(Op::kDataRegister, lock, indices.count);
    next_temporary_ = kept;
    return;
  }
  if (by_reference && argument.kind == ast::ExprKind::kName) {
    variable = resolve(intern(static_cast<const ast::Name&>(argument).name));
    if (variable.kind == Resolved::Kind::kVariable || variable.kind == Resolved::Kind::kAlias) {
      emit(Op::kRefer, slot, load(variable));
      return;
    }
  }
  compile_into(argument, Want::kAnything, slot);
}

// Evaluates them into a window of registers: plain variables and elements by reference. `spare` registers more follow.
Compiler::Arguments Compiler::arguments(const ast::List<ast::Expr>* list, bool by_reference, std::size_t spare) {
  const std::uint32_t count = count_of(list);
  if (count > kFirstTemporary) too_much();
  Arguments made{0, static_cast<std::uint16_t>(count), {}};
  std::vector<Operand> locks;
  if (by_reference && list != nullptr) {
    Resolved variable{};
    std::size_t at = 0;
    for (const ast::Expr* e = list->first; e != nullptr; e = e->next, ++at) {
      if (element_of_variable(*e, variable) == nullptr) continue;
      locks.resize(count, kNoOperand);
      locks[at] = temporary();
      made.locks.push_back(locks[at]);
    }
  }
  made.window = temporaries(count + spare + (count + spare == 0 ? 1 : 0));
  if (list == nullptr) return made;
  std::size_t at = 0;
  for (const ast::Expr* e = list->first; e != nullptr; e = e->next, ++at) {
    argument(*e, behind(made.window, at), locks.empty() ? kNoOperand : locks[at], by_reference);
  }
  return made;
}

Operand Compiler::call_script(Op op, std::size_t index, const CallSite& site, Operand into, bool by_reference) {
  const Operand result = result_place(into);
  const std::size_t kept = next_temporary_;
  const Arguments made = arguments(site.arguments, by_reference);
  emit(op, result, 0, made.window);
  emit_data(made.count, index, site.flags());
  for (const Operand lock : made.locks) emit(Op::kClear, lock);
  next_temporary_ = kept;
  return result;
}

Operand Compiler::call_builtin(const Builtin& builtin, const CallSite& site, Operand into) {
  const std::uint32_t count = count_of(site.arguments);
  if (static_cast<int>(count) < builtin.min_arguments || static_cast<int>(count) > builtin.max_arguments) {
    raise_at_run_time(code_of(ErrorCode::kWrongArgumentCount), intern(builtin.name));
    return constant({});
  }
  const std::size_t index = builtin_index(&builtin);
  if (index > 0xFFFF) too_much();
  if (count != 1) return call_script(Op::kCallBuiltin, index, site, into, false);
  const std::size_t kept = next_temporary_;
  const Operand argument = compile(*site.arguments->first, Want::kAnything);
  const int flags = site.flags() | (is_temporary(argument) ? kConsumeFirst : 0);
  next_temporary_ = kept;
  const Operand result = result_place(into);
  emit(Op::kCallBuiltin1, result, argument, static_cast<Operand>(index), flags);
  return result;
}

Operand Compiler::call_special(const Resolved& name, const CallSite& site, Operand into) {
  const bool needs_one = name.special != Resolved::Special::kRandomize;
  if (count_of(site.arguments) > 1 || (needs_one && count_of(site.arguments) == 0)) {
    raise_at_run_time(code_of(ErrorCode::kWrongArgumentCount), name.symbol);
    return constant({});
  }
  const std::size_t kept = next_temporary_;
  const Operand argument = count_of(site.arguments) == 0 ? constant({}) : compile(*site.arguments->first, Want::kValue);
  switch (name.special) {
    case Resolved::Special::kExecute:
    case Resolved::Special::kExecuteGlobal:
      emit(Op::kExecute, 0, argument, 0, name.special == Resolved::Special::kExecuteGlobal ? 1 : 0);
      next_temporary_ = kept;
      return constant({});
    case Resolved::Special::kRandomize:
      emit(Op::kRandomize, 0, argument, 0, count_of(site.arguments) == 0 ? 0 : 1);
      next_temporary_ = kept;
      return constant({});
    case Resolved::Special::kEval:
    case Resolved::Special::kGetRef:
      break;
  }
  next_temporary_ = kept;
  const Operand result = result_place(into);
  emit(name.special == Resolved::Special::kEval ? Op::kEval : Op::kGetRef, result, argument, 0, site.flags());
  return result;
}

// A property or method of the class that is being compiled.
Operand Compiler::call_member(const Member& member, const CallSite& site, Operand into) {
  if (member.get == nullptr) {
    raise_at_run_time(code_of(ErrorCode::kNoSuchMember), member.name);
    return constant({});
  }
  return call_script(Op::kCallMethod, method_index(member.get), site, into, true);
}

Operand Compiler::call_resolved(const Resolved& name, const CallSite& site, Operand into) {
  switch (name.kind) {
    case Resolved::Kind::kVariable:
    case Resolved::Kind::kAlias:
    case Resolved::Kind::kConstant:
      if (site.arguments == nullptr && !site.statement) return load(name);
      return use_index(load(name), site, into);
    case Resolved::Kind::kProcedure:
      return call_script(Op::kCall, name_index(name.symbol), site, into, true);
    case Resolved::Kind::kHost:
      return call_script(Op::kCallHost, name_index(name.symbol), site, into, false);
    case Resolved::Kind::kMember:
      return call_member(*name.member, site, into);
    case Resolved::Kind::kBuiltin:
      return call_builtin(*name.builtin, site, into);
    case Resolved::Kind::kSpecial:
      return call_special(name, site, into);
    case Resolved::Kind::kClass:
      break;
  }
  raise_at_run_time(code_of(ErrorCode::kTypeMismatch), name.symbol);
  return constant({});
}

Operand Compiler::call_name(Symbol* symbol, const CallSite& site, Operand into) {
  const Resolved name = resolve(symbol);
  const bool calls = site.statement || site.arguments != nullptr;
  return call_resolved(calls && is_own_result(name) ? own_procedure(name) : name, site, into);
}

Operand Compiler::use_member(Operand subject, Symbol* name, const CallSite& site, Operand into) {
  // The result may go where the subject is: it comes last.
  const bool consume = is_temporary(subject);
  const Operand result = into != kNoOperand ? into : consume ? subject : temporary();
  const std::size_t kept = next_temporary_;
  const Arguments made = arguments(site.arguments, true);
  emit(Op::kMember, result, subject, made.window);
  emit_data(made.count, name_index(name), static_cast<std::uint8_t>(site.flags() | (consume ? kConsumeFirst : 0)));
  for (const Operand lock : made.locks) emit(Op::kClear, lock);
  next_temporary_ = kept;
  return result;
}

Operand Compiler::use_index(Operand subject, const CallSite& site, Operand into) {
  const bool consume = is_temporary(subject);
  const Operand result = into != kNoOperand ? into : consume ? subject : temporary();
  const std::size_t kept = next_temporary_;
  int flags = site.flags() | (consume ? kConsumeFirst : 0);
  Resolved variable{};
  const ast::Expr* only = count_of(site.arguments) == 1 && !site.statement ? site.arguments->first : nullptr;
  if (only != nullptr && only->kind != ast::ExprKind::kOmitted && element_of_variable(*only, variable) == nullptr) {
    const Operand index = compile(*only, Want::kAnything);
    if (is_temporary(index)) flags |= kConsumeSecond;
    emit(Op::kIndex, result, subject, index, flags);
  } else {
    const Arguments made = arguments(site.arguments, true);
    emit(Op::kIndexMany, result, subject, made.window);
    emit_data(made.count, 0, static_cast<std::uint8_t>(flags));
    for (const Operand lock : made.locks) emit(Op::kClear, lock);
  }
  next_temporary_ = kept;
  return result;
}

// name, name(…), and whatever follows: .member, .member(…), (…). Rows of them may be as long as the source allows.
Operand Compiler::chain(const ast::Expr& outermost, Want want, Operand into) {
  std::vector<const ast::Expr*> links;  // the outermost first
  const ast::Expr* e = &outermost;
  while (e->kind == ast::ExprKind::kMember || e->kind == ast::ExprKind::kIndex) {
    links.push_back(e);
    e = e->kind == ast::ExprKind::kMember ? static_cast<const ast::Member*>(e)->object
                                          : static_cast<const ast::Index*>(e)->callee;
  }
  std::size_t left = links.size();
  const auto arguments_of_next = [&]() -> const ast::List<ast::Expr>* {
    if (left == 0 || links[left - 1]->kind != ast::ExprKind::kIndex) return nullptr;
    return &static_cast<const ast::Index*>(links[--left])->arguments;
  };
  const auto site = [&](const ast::List<ast::Expr>* arguments) {
    return CallSite{arguments, left == 0 ? want : Want::kAnything, false};
  };
  Operand value;
  if (e->kind == ast::ExprKind::kName) {
    const auto* arguments = arguments_of_next();
    value = call_name(intern(static_cast<const ast::Name*>(e)->name), site(arguments), left == 0 ? into : kNoOperand);
  } else {
    value = compile(*e, Want::kAnything);
  }
  while (left > 0) {
    const ast::Expr* link = links[--left];
    if (link->kind == ast::ExprKind::kMember) {
      const auto* arguments = arguments_of_next();
      Symbol* name = intern(static_cast<const ast::Member*>(link)->name);
      value = use_member(value, name, site(arguments), left == 0 ? into : kNoOperand);
    } else {
      value = use_index(value, site(&static_cast<const ast::Index*>(link)->arguments), left == 0 ? into : kNoOperand);
    }
  }
  return value;
}

void Compiler::call_statement(const ast::Call& call) {
  const CallSite site{&call.arguments, Want::kAnything, true};
  const ast::Expr& callee = *call.callee;
  if (callee.kind == ast::ExprKind::kName) {
    call_name(intern(static_cast<const ast::Name&>(callee).name), site, kNoOperand);
  } else if (callee.kind == ast::ExprKind::kMember) {
    const auto& member = static_cast<const ast::Member&>(callee);
    const Operand subject = compile(*member.object, Want::kAnything);
    use_member(subject, intern(member.name), site, kNoOperand);
  } else {
    use_index(compile(callee, Want::kAnything), site, kNoOperand);
  }
}

}  // namespace pv::vbscript
