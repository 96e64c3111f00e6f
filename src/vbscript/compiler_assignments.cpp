// Let and Set, ReDim and Erase.
#include "vbscript/compiler_state.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

constexpr auto kIllegalAssignment = static_cast<std::int32_t>(ErrorCode::kIllegalAssignment);

Want wanted(const ast::Assign& assign) {
  return assign.set ? Want::kAnything : Want::kValue;
}

}  // namespace

void Compiler::assign_own_member(const Member& member, Symbol* name, const ast::List<ast::Expr>* list,
                                 const ast::Assign& assign) {
  const Code* code = assign.set ? member.set : member.let;
  if (code == nullptr) {
    raise_at_run_time(kIllegalAssignment, name);
    return;
  }
  const Operand nowhere = temporary();
  const Arguments made = arguments(list, true, 1);
  const auto slot = behind(made.window, made.count);
  compile_into(*assign.value, wanted(assign), slot);
  emit(Op::kCallMethod, nowhere, 0, made.window);
  emit_data(static_cast<std::uint16_t>(made.count + 1), method_index(code), kDiscard | kStatement);
  for (const Operand lock : made.locks) emit(Op::kClear, lock);
}

void Compiler::assign_name(const ast::Name& target, const ast::Assign& assign) {
  const Resolved name = resolve(intern(target.name));
  switch (name.kind) {
    case Resolved::Kind::kVariable: {
      const Operand value = compile(*assign.value, wanted(assign), assign.set ? kNoOperand : name.place);
      if (assign.set) {
        emit(Op::kSet, name.place, value, 0, is_temporary(value) ? kConsumeFirst : 0);
      } else if (value != name.place) {
        emit(Op::kLet, name.place, value);
      }
      return;
    }
    case Resolved::Kind::kAlias: {
      const Operand value = compile(*assign.value, wanted(assign));
      const Operand variable = load(name);
      emit(assign.set ? Op::kSet : Op::kLet, variable, value, 0, is_temporary(value) ? kConsumeFirst : 0);
      return;
    }
    case Resolved::Kind::kMember:
      assign_own_member(*name.member, name.symbol, nullptr, assign);
      return;
    default:
      raise_at_run_time(kIllegalAssignment, name.symbol);
  }
}

void Compiler::store_element(Operand subject, const ast::Index& target, const ast::Assign& assign) {
  const ast::List<ast::Expr>& list = target.arguments;
  const int set = assign.set ? kSetObject : 0;
  Resolved variable{};
  if (list.size == 1 && list.first->kind != ast::ExprKind::kOmitted &&
      element_of_variable(*list.first, variable) == nullptr) {
    Operand index = compile(*list.first, Want::kAnything);
    if (!is_temporary(index) && kind_of(index) != OperandKind::kConstant && may_run_code(*assign.value)) {
      const Operand kept = temporary();
      emit(Op::kCopy, kept, index);
      index = kept;
    }
    const Operand value = compile(*assign.value, wanted(assign));
    const int flags = set | (is_temporary(value) ? kConsumeSecond : 0) | (is_temporary(index) ? kConsumeFirst : 0);
    emit(Op::kIndexStore, subject, index, value, flags);
    return;
  }
  const Arguments made = arguments(&list, true, 1);
  compile_into(*assign.value, wanted(assign), behind(made.window, made.count));
  emit(Op::kIndexStoreMany, subject, 0, made.window);
  emit_data(static_cast<std::uint16_t>(made.count + 1), 0, static_cast<std::uint8_t>(set));
  for (const Operand lock : made.locks) emit(Op::kClear, lock);
}

void Compiler::assign_member(const ast::Member& target, const ast::List<ast::Expr>* list, const ast::Assign& assign) {
  const Operand subject = compile(*target.object, Want::kAnything);
  const int flags = (assign.set ? kSetObject : 0) | (is_temporary(subject) ? kConsumeFirst : 0);
  const Arguments made = arguments(list, true, 1);
  compile_into(*assign.value, wanted(assign), behind(made.window, made.count));
  emit(Op::kMemberStore, subject, 0, made.window);
  emit_data(static_cast<std::uint16_t>(made.count + 1), name_index(intern(target.name)),
            static_cast<std::uint8_t>(flags));
  for (const Operand lock : made.locks) emit(Op::kClear, lock);
}

// a(1)(2): all indices are evaluated to plain values first, because nothing may run between taking a reference to an
// element and using it.
Operand Compiler::changed_place(const ast::Expr& target) {
  if (target.kind == ast::ExprKind::kName) {
    const Resolved name = resolve(intern(static_cast<const ast::Name&>(target).name));
    if (name.kind == Resolved::Kind::kVariable || name.kind == Resolved::Kind::kAlias) return load(name);
    raise_at_run_time(static_cast<std::int32_t>(ErrorCode::kTypeMismatch), name.symbol);
    return temporary();
  }
  if (target.kind == ast::ExprKind::kMember) {
    const auto& member = static_cast<const ast::Member&>(target);
    const Operand subject = compile(*member.object, Want::kAnything);
    const Operand place = temporary();
    emit(Op::kMemberElement, place, subject);
    emit_data(0, name_index(intern(member.name)), 0);
    return place;
  }
  std::vector<const ast::Index*> links;  // the outermost first
  const ast::Expr* base = &target;
  while (base->kind == ast::ExprKind::kIndex) {
    links.push_back(static_cast<const ast::Index*>(base));
    base = links.back()->callee;
  }
  Resolved variable{};
  const bool of_variable =
      base->kind == ast::ExprKind::kName && !links.empty() && element_of_variable(*links.back(), variable) != nullptr;
  // The result variable of a function counts here: f(1)(2) = 3 can only mean that.
  if (links.empty() || (!of_variable && (base->kind != ast::ExprKind::kName || !is_own_result(variable)))) {
    const Operand value = compile(target, Want::kAnything);
    if (is_temporary(value)) return value;
    const Operand copy = temporary();
    emit(Op::kCopy, copy, value);
    return copy;
  }
  std::vector<Arguments> indices;
  for (std::size_t i = links.size(); i-- > 0;) {
    const auto count = links[i]->arguments.size;
    const Operand window = temporaries(std::size_t{count} + (count == 0 ? 1 : 0));
    indices.push_back({window, static_cast<std::uint16_t>(count), {}});
    std::size_t at = 0;
    for (const ast::Expr* e = links[i]->arguments.first; e != nullptr; e = e->next) {
      compile_into(*e, Want::kValue, behind(window, at++));
    }
  }
  Operand place = load(variable);
  for (const Arguments& made : indices) {
    const Operand element = temporary();
    emit(Op::kElement, element, place, made.window);
    emit_data(made.count, 0, is_temporary(place) ? kConsumeFirst : 0);
    place = element;
  }
  return place;
}

void Compiler::assign_index(const ast::Index& target, const ast::Assign& assign) {
  const ast::Expr& callee = *target.callee;
  if (callee.kind == ast::ExprKind::kName) {
    const Resolved name = resolve(intern(static_cast<const ast::Name&>(callee).name));
    switch (name.kind) {
      case Resolved::Kind::kVariable:
      case Resolved::Kind::kAlias:
      case Resolved::Kind::kConstant:
        store_element(load(name), target, assign);
        return;
      case Resolved::Kind::kMember:
        assign_own_member(*name.member, name.symbol, &target.arguments, assign);
        return;
      default:
        raise_at_run_time(kIllegalAssignment, name.symbol);
        return;
    }
  }
  if (callee.kind == ast::ExprKind::kMember) {
    assign_member(static_cast<const ast::Member&>(callee), &target.arguments, assign);
    return;
  }
  if (callee.kind != ast::ExprKind::kIndex) {
    store_element(compile(callee, Want::kAnything), target, assign);
    return;
  }
  // An element of an element: value and indices first, then the references, then at once the store.
  const Operand window = temporaries(std::size_t{target.arguments.size} + 1);
  std::size_t at = 0;
  for (const ast::Expr* e = target.arguments.first; e != nullptr; e = e->next)
    compile_into(*e, Want::kAnything, behind(window, at++));
  compile_into(*assign.value, wanted(assign), behind(window, at));
  const Operand subject = changed_place(callee);
  emit(Op::kIndexStoreMany, subject, 0, window);
  emit_data(static_cast<std::uint16_t>(target.arguments.size + 1), 0,
            static_cast<std::uint8_t>((assign.set ? kSetObject : 0) | kConsumeFirst));
}

void Compiler::assign(const ast::Assign& assign) {
  switch (assign.target->kind) {
    case ast::ExprKind::kName:
      assign_name(static_cast<const ast::Name&>(*assign.target), assign);
      break;
    case ast::ExprKind::kIndex:
      assign_index(static_cast<const ast::Index&>(*assign.target), assign);
      break;
    default:
      assign_member(static_cast<const ast::Member&>(*assign.target), nullptr, assign);
  }
}

void Compiler::redim(const ast::ReDim& statement) {
  for (const ast::ReDimTarget* target = statement.targets.first; target != nullptr; target = target->next) {
    const std::size_t kept = next_temporary_;
    const std::size_t count = target->bounds.size;
    if (count > kMaxArrayDimensions) too_much();
    const Operand window = temporaries(count);
    std::size_t at = 0;
    for (const ast::Expr* e = target->bounds.first; e != nullptr; e = e->next) {
      compile_into(*e, Want::kValue, behind(window, at++));
    }
    const bool explicit_names = explicit_names_;
    explicit_names_ = false;  // ReDim declares
    const Operand place = changed_place(*target->target);
    explicit_names_ = explicit_names;
    emit(Op::kReDim, place, window, static_cast<Operand>(count), statement.preserve ? 1 : 0);
    if (is_temporary(place)) emit(Op::kClear, place);
    next_temporary_ = kept;
  }
}

void Compiler::erase(const ast::Erase& statement) {
  const Operand place = changed_place(*statement.target);
  emit(Op::kErase, place);
  if (is_temporary(place)) emit(Op::kClear, place);
}

}  // namespace pv::vbscript
