// For, For Each and Do. A loop's own registers stay taken while its body is compiled.
#include "vbscript/compiler_state.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

void Compiler::close_loop() {
  for (const std::size_t exit : enclosing_.back().exits) set_distance_here(exit);
  enclosing_.pop_back();
}

void Compiler::for_statement(const ast::For& statement) {
  const Resolved counter = resolve(intern(static_cast<const ast::Name&>(*statement.variable).name));
  if (counter.kind != Resolved::Kind::kVariable && counter.kind != Resolved::Kind::kAlias) {
    raise_at_run_time(static_cast<std::int32_t>(ErrorCode::kIllegalAssignment), counter.symbol);
    return;
  }
  const std::size_t kept = next_temporary_;
  const Operand window = temporaries(2);
  const Operand step = behind(window, 1);
  Operand from = compile(*statement.from, Want::kValue);
  if (!is_temporary(from) && kind_of(from) != OperandKind::kConstant &&
      (may_run_code(*statement.to) || (statement.step != nullptr && may_run_code(*statement.step)))) {
    const Operand copy = temporary();
    emit(Op::kLet, copy, from);
    from = copy;
  }
  compile_into(*statement.to, Want::kValue, window);
  if (statement.step != nullptr) {
    compile_into(*statement.step, Want::kValue, step);
  } else {
    emit(Op::kCopy, step, constant(Value::integer(1)));
  }
  const Operand variable = load(counter);
  emit(Op::kForPrepare, variable, from, window);
  const std::size_t skip = emit(Op::kData);
  next_temporary_ = kept + 2;

  const std::size_t start = here();
  enclosing_.push_back({Enclosing::Kind::kFor});
  block(statement.body);
  mark(statement.next_at);
  const std::size_t next = emit(Op::kForNext, load(counter), window);
  set_distance(next, start);
  set_distance_here(skip);
  close_loop();
  next_temporary_ = kept;
}

void Compiler::for_each_statement(const ast::ForEach& statement) {
  const Resolved name = resolve(intern(static_cast<const ast::Name&>(*statement.variable).name));
  if (name.kind != Resolved::Kind::kVariable && name.kind != Resolved::Kind::kAlias) {
    raise_at_run_time(static_cast<std::int32_t>(ErrorCode::kIllegalAssignment), name.symbol);
    return;
  }
  const std::size_t kept = next_temporary_;
  const Operand window = temporaries(2);
  const Operand collection = compile(*statement.collection, Want::kAnything);
  emit(Op::kForEachPrepare, window, collection, 0, is_temporary(collection) ? kConsumeFirst : 0);
  const std::size_t first = emit(Op::kJump);
  next_temporary_ = kept + 2;

  const std::size_t start = here();
  enclosing_.push_back({Enclosing::Kind::kForEach, window});
  block(statement.body);
  mark(statement.next_at);
  set_distance_here(first);
  const std::size_t next = emit(Op::kForEachNext, load(name), window);
  set_distance(next, start);
  close_loop();
  emit(Op::kClear, window);
  next_temporary_ = kept;
}

void Compiler::do_statement(const ast::Do& statement) {
  const std::size_t start = here();
  std::size_t leave = 0;
  const bool tests_first = statement.test == ast::DoTest::kWhileBefore || statement.test == ast::DoTest::kUntilBefore;
  if (tests_first) {
    leave =
        statement.test == ast::DoTest::kWhileBefore ? jump_unless(*statement.condition) : jump_if(*statement.condition);
  }
  enclosing_.push_back({statement.is_while_wend ? Enclosing::Kind::kWhileWend : Enclosing::Kind::kDo});
  block(statement.body);
  mark(statement.end_at);
  const bool tests_last = statement.test == ast::DoTest::kWhileAfter || statement.test == ast::DoTest::kUntilAfter;
  if (tests_last) {
    leave =
        statement.test == ast::DoTest::kWhileAfter ? jump_unless(*statement.condition) : jump_if(*statement.condition);
  }
  set_distance(emit(Op::kLoop), start);
  if (tests_first || tests_last) set_distance_here(leave);
  close_loop();
}

}  // namespace pv::vbscript
