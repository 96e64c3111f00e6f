// Statements that hold no others.
#include "vbscript/parser_state.h"

namespace pv::vbscript {

// Procedures and classes go into the program itself, wherever they stand: they are there from the beginning.
void Parser::statement(ast::Block& block) {
  ast::Stmt* node = nullptr;
  any_statement_ = any_statement_ || !is(TokenKind::kOption);
  switch (token_.kind) {
    case TokenKind::kPublic:
    case TokenKind::kPrivate:
      node = visibility_statement();
      break;
    case TokenKind::kSub:
    case TokenKind::kFunction:
      node = procedure(token_.at, ast::Visibility::kDefault, false);
      break;
    case TokenKind::kClass:
      class_statement();
      return;
    case TokenKind::kOption:
      option_statement();
      return;
    case TokenKind::kStop:
      advance();
      return;
    default:
      node = simple_statement();
  }
  (node->kind == ast::StmtKind::kProcedure ? program_->body : block).append(node);
}

ast::Stmt* Parser::simple_statement() {
  switch (token_.kind) {
    case TokenKind::kDim:
      return dim_statement(token_.at, ast::Visibility::kDefault);
    case TokenKind::kReDim:
      return redim_statement();
    case TokenKind::kConst:
      return const_statement(token_.at, ast::Visibility::kDefault);
    case TokenKind::kIf:
      return if_statement();
    case TokenKind::kSelect:
      return select_statement();
    case TokenKind::kFor:
      return for_statement();
    case TokenKind::kDo:
      return do_statement();
    case TokenKind::kWhile:
      return while_statement();
    case TokenKind::kWith:
      return with_statement();
    case TokenKind::kCall:
      return call_statement();
    case TokenKind::kLet:
      return let_or_set_statement(false);
    case TokenKind::kSet:
      return let_or_set_statement(true);
    case TokenKind::kOn:
      return on_error_statement();
    case TokenKind::kExit:
      return exit_statement();
    case TokenKind::kErase:
      return erase_statement();
    default:
      return assignment_or_call();
  }
}

bool Parser::begins_statement() const {
  switch (token_.kind) {
    case TokenKind::kCall:
    case TokenKind::kConst:
    case TokenKind::kDim:
    case TokenKind::kDo:
    case TokenKind::kDot:
    case TokenKind::kExit:
    case TokenKind::kFor:
    case TokenKind::kIf:
    case TokenKind::kLet:
    case TokenKind::kMe:
    case TokenKind::kOn:
    case TokenKind::kReDim:
    case TokenKind::kSelect:
    case TokenKind::kSet:
    case TokenKind::kStop:
    case TokenKind::kWhile:
    case TokenKind::kWith:
      return true;
    default:
      return at_name();
  }
}

void Parser::fail_at_no_statement() const {
  switch (token_.kind) {
    case TokenKind::kLoop:
      fail(1038);
    case TokenKind::kNext:
      fail(1055);
    default:
      fail(1024);
  }
}

// Whether "." goes on with the name before it. Inside With, ".x" behind a blank is an argument of its own.
bool Parser::at_member_of_subject() const {
  return is(TokenKind::kDot) && !(token_.after_blank && around_.withs > 0);
}

// target = value, or procedure arguments. What stands in parentheses directly behind the name is known for arguments,
// an index or a part of an expression only by what follows.
ast::Stmt* Parser::assignment_or_call() {
  if (at_property()) fail(1048);
  const Position at = token_.at;
  ast::Expr* subject = nullptr;
  if (is(TokenKind::kDot)) {
    subject = with_member();
  } else if (is(TokenKind::kMe)) {
    subject = me();
  } else if (at_name()) {
    subject = name();
  } else {
    fail_at_no_statement();
  }
  ast::List<ast::Expr> in_parentheses;
  bool has_parentheses = false;
  for (;;) {
    const bool has_member = has_parentheses ? is(TokenKind::kDot) : at_member_of_subject();
    if (!has_member && !is(TokenKind::kLeftParenthesis)) break;
    if (has_parentheses) subject = index_of(subject, in_parentheses);
    has_parentheses = !has_member;
    if (has_member) {
      subject = member_of(subject);
    } else {
      in_parentheses = parenthesised_arguments();
    }
  }
  if (is(TokenKind::kEqual)) {
    if (has_parentheses) subject = index_of(subject, in_parentheses);
    return finish_assignment(at, subject, false);
  }
  if (subject->kind == ast::ExprKind::kMe) fail(1037, at);
  return call_with(make<ast::Call>(ast::StmtKind::kCall, at), subject, has_parentheses, in_parentheses);
}

ast::Stmt* Parser::call_with(ast::Call* call, ast::Expr* callee, bool has_parentheses,
                             ast::List<ast::Expr> in_parentheses) {
  call->callee = callee;
  if (!has_parentheses) {
    if (!at_statement_end()) arguments_after(call, argument());
    return call;
  }
  if (at_statement_end() && in_parentheses.empty()) return call;
  if (in_parentheses.size != 1) fail(at_statement_end() || is(TokenKind::kComma) ? 1044 : 1025);
  if (!at_statement_end() && !is(TokenKind::kComma) && !at_operator()) fail(1025);
  auto* const first = make<ast::Parenthesised>(ast::ExprKind::kParenthesised, in_parentheses.first->at);
  first->operand = in_parentheses.first;
  arguments_after(call, binary(first, 1));
  return call;
}

void Parser::arguments_after(ast::Call* call, ast::Expr* first) {
  call->arguments.append(first);
  while (accept(TokenKind::kComma)) call->arguments.append(argument());
}

ast::Stmt* Parser::finish_assignment(Position at, ast::Expr* target, bool set) {
  if (target->kind == ast::ExprKind::kMe) fail(1037, at);
  expect(TokenKind::kEqual, 1011);
  auto* const node = make<ast::Assign>(ast::StmtKind::kAssign, at);
  node->set = set;
  node->target = target;
  node->value = expression();
  return node;
}

ast::Stmt* Parser::let_or_set_statement(bool set) {
  const Position at = token_.at;
  advance();
  if (is(TokenKind::kDot)) return finish_assignment(at, postfixes(with_member()), set);
  if (is(TokenKind::kMe)) return finish_assignment(at, postfixes(me()), set);
  if (!at_name()) fail(1010);
  return finish_assignment(at, postfixes(name()), set);
}

// Call procedure(arguments): here the parentheses are the argument list.
ast::Stmt* Parser::call_statement() {
  auto* const call = make<ast::Call>(ast::StmtKind::kCall, token_.at);
  advance();
  ast::Expr* callee = nullptr;
  if (is(TokenKind::kDot)) {
    callee = postfixes(with_member());
  } else if (is(TokenKind::kMe)) {
    callee = postfixes(me());
  } else if (at_name()) {
    callee = postfixes(name());
  } else {
    fail(1010);
  }
  if (callee->kind == ast::ExprKind::kIndex) {
    const auto* const index = static_cast<const ast::Index*>(callee);
    call->arguments = index->arguments;
    callee = index->callee;
  }
  call->callee = callee;
  return call;
}

// "Erase" is a name like any other before "=", "." or "(" with an assignment; as a statement it has a name behind it.
ast::Stmt* Parser::erase_statement() {
  const Token word = token_;
  advance();
  if (!at_name() && !is(TokenKind::kLeftParenthesis) && !(is(TokenKind::kDot) && token_.after_blank)) {
    auto* const subject = make<ast::Name>(ast::ExprKind::kName, word.at);
    subject->name = word.text;
    if (is(TokenKind::kEqual)) return finish_assignment(word.at, subject, false);
    fail(1010);
  }
  auto* const node = make<ast::Erase>(ast::StmtKind::kErase, word.at);
  node->target = primary();
  return node;
}

// On Error Resume Next, On Error GoTo 0.
ast::Stmt* Parser::on_error_statement() {
  auto* const node = make<ast::OnError>(ast::StmtKind::kOnError, token_.at);
  advance();
  expect(TokenKind::kError, 1002);
  node->resume_next = is(TokenKind::kResume);
  if (accept(TokenKind::kResume)) {
    expect(TokenKind::kNext, 1020);
  } else {
    expect(TokenKind::kGoTo, 1002);
    if (!is(TokenKind::kInteger) || token_.number != 0) fail(1002);
    advance();
  }
  return node;
}

ast::Stmt* Parser::exit_statement() {
  auto* const node = make<ast::Exit>(ast::StmtKind::kExit, token_.at);
  advance();
  const auto in_procedure = [&](bool is_property, ast::ProcedureKind kind) {
    if (procedure_ == nullptr) return false;
    return is_property ? procedure_->what >= ast::ProcedureKind::kPropertyGet : procedure_->what == kind;
  };
  bool allowed = false;
  switch (token_.kind) {
    case TokenKind::kDo:
      node->what = ast::ExitKind::kDo;
      allowed = around_.do_loops > 0;
      break;
    case TokenKind::kFor:
      node->what = ast::ExitKind::kFor;
      allowed = around_.for_loops != nullptr;
      break;
    case TokenKind::kFunction:
      node->what = ast::ExitKind::kFunction;
      allowed = in_procedure(false, ast::ProcedureKind::kFunction);
      break;
    case TokenKind::kSub:
      node->what = ast::ExitKind::kSub;
      allowed = in_procedure(false, ast::ProcedureKind::kSub);
      break;
    case TokenKind::kProperty:
      node->what = ast::ExitKind::kProperty;
      allowed = in_procedure(true, ast::ProcedureKind::kPropertyGet);
      break;
    default:
      break;
  }
  if (!allowed) fail(1039);
  advance();
  return node;
}

void Parser::option_statement() {
  if (any_statement_) fail(1024);
  advance();
  expect(TokenKind::kExplicit, 1002);
  any_statement_ = true;
  program_->option_explicit = true;
}

}  // namespace pv::vbscript
