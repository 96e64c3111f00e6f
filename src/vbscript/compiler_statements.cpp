// Statements but loops and assignments.
#include "vbscript/compiler_state.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

void Compiler::if_statement(const ast::If& statement) {
  std::vector<std::size_t> ends;
  for (const ast::IfBranch* branch = statement.branches.first; branch != nullptr; branch = branch->next) {
    std::size_t skip = 0;
    const bool tested = branch->condition != nullptr;
    if (tested) {
      if (branch != statement.branches.first) mark(branch->at, false);
      skip = jump_unless(*branch->condition);
    }
    block(branch->body);
    if (branch->next != nullptr) {
      mark(branch->at);  // an error in the branch's last statement goes on here, not in the next branch
      ends.push_back(emit(Op::kJump));
    }
    if (tested) set_distance_here(skip);
  }
  for (const std::size_t end : ends) set_distance_here(end);
}

void Compiler::select_statement(const ast::Select& statement) {
  const std::size_t kept = next_temporary_;
  const Operand subject = temporary();
  compile_into(*statement.subject, Want::kValue, subject);
  std::vector<std::size_t> ends;
  for (const ast::CaseBranch* branch = statement.cases.first; branch != nullptr; branch = branch->next) {
    std::vector<std::size_t> hits;
    std::size_t skip = 0;
    if (!branch->values.empty()) mark(branch->at, false);
    for (const ast::Expr* value = branch->values.first; value != nullptr; value = value->next) {
      const std::size_t inner = next_temporary_;
      const Operand place = compile(*value, Want::kValue);
      next_temporary_ = inner;
      if (value->next == nullptr) {
        skip = emit(Op::kJumpUnlessEqual, subject, place);
      } else {
        hits.push_back(emit(Op::kJumpIfEqual, subject, place));
      }
    }
    for (const std::size_t hit : hits) set_distance_here(hit);
    block(branch->body);
    mark(branch->at);
    if (branch->next != nullptr) ends.push_back(emit(Op::kJump));
    if (!branch->values.empty()) set_distance_here(skip);
  }
  for (const std::size_t end : ends) set_distance_here(end);
  next_temporary_ = kept;
}

void Compiler::with_statement(const ast::With& statement) {
  const std::size_t kept = next_temporary_;
  const Operand object = temporary();
  const Operand subject = compile(*statement.subject, Want::kAnything);
  emit(Op::kWith, object, subject, 0, is_temporary(subject) ? kConsumeFirst : 0);
  next_temporary_ = kept + 1;
  enclosing_.push_back({Enclosing::Kind::kWith, object});
  block(statement.body);
  enclosing_.pop_back();
  mark(statement.at);
  emit(Op::kClear, object);
  next_temporary_ = kept;
}

void Compiler::exit_statement(const ast::Exit& statement) {
  if (statement.what != ast::ExitKind::kDo && statement.what != ast::ExitKind::kFor) {
    emit(Op::kClearErr);
    emit(Op::kReturn);
    return;
  }
  const bool leaves_for = statement.what == ast::ExitKind::kFor;
  for (std::size_t i = enclosing_.size(); i-- > 0;) {
    Enclosing& around = enclosing_[i];
    const bool is_for = around.kind == Enclosing::Kind::kFor || around.kind == Enclosing::Kind::kForEach;
    if (leaves_for ? is_for : around.kind == Enclosing::Kind::kDo) {
      around.exits.push_back(emit(Op::kJump));
      return;
    }
    if (around.object != kNoOperand) emit(Op::kClear, around.object);
  }
  throw CompileError{1039, statement.at};
}

void Compiler::statement(const ast::Stmt& statement) {
  switch (statement.kind) {
    case ast::StmtKind::kAssign:
      assign(static_cast<const ast::Assign&>(statement));
      break;
    case ast::StmtKind::kCall:
      call_statement(static_cast<const ast::Call&>(statement));
      break;
    case ast::StmtKind::kIf:
      if_statement(static_cast<const ast::If&>(statement));
      break;
    case ast::StmtKind::kSelect:
      select_statement(static_cast<const ast::Select&>(statement));
      break;
    case ast::StmtKind::kFor:
      for_statement(static_cast<const ast::For&>(statement));
      break;
    case ast::StmtKind::kForEach:
      for_each_statement(static_cast<const ast::ForEach&>(statement));
      break;
    case ast::StmtKind::kDo:
      do_statement(static_cast<const ast::Do&>(statement));
      break;
    case ast::StmtKind::kWith:
      with_statement(static_cast<const ast::With&>(statement));
      break;
    case ast::StmtKind::kExit:
      exit_statement(static_cast<const ast::Exit&>(statement));
      break;
    case ast::StmtKind::kReDim:
      redim(static_cast<const ast::ReDim&>(statement));
      break;
    case ast::StmtKind::kErase:
      erase(static_cast<const ast::Erase&>(statement));
      break;
    case ast::StmtKind::kOnError:
      emit(Op::kOnError, 0, 0, 0, static_cast<const ast::OnError&>(statement).resume_next ? 1 : 0);
      break;
    case ast::StmtKind::kDim:
    case ast::StmtKind::kConst:
    case ast::StmtKind::kProcedure:
    case ast::StmtKind::kClass:
      break;  // declared beforehand
  }
}

void Compiler::block(const ast::Block& statements) {
  const std::size_t kept = next_temporary_;
  for (const ast::Stmt* s = statements.first; s != nullptr; s = s->next) {
    if (s->kind == ast::StmtKind::kDim || s->kind == ast::StmtKind::kConst || s->kind == ast::StmtKind::kProcedure ||
        s->kind == ast::StmtKind::kClass) {
      continue;
    }
    mark(s->at);
    statement(*s);
    next_temporary_ = kept;
  }
}

}  // namespace pv::vbscript
