// Statements that hold others.
#include <utility>

#include "vbscript/characters.h"
#include "vbscript/parser_state.h"

namespace pv::vbscript {

bool Parser::at_block_end(BlockKind kind) const {
  if (is(TokenKind::kEndOfText)) return true;
  switch (kind) {
    case BlockKind::kNone:
      return false;
    case BlockKind::kIf:
      return is(TokenKind::kElse) || is(TokenKind::kElseIf) || is(TokenKind::kEnd);
    case BlockKind::kSelect:
      return is(TokenKind::kCase) || is(TokenKind::kEnd);
    case BlockKind::kFor:
      return is(TokenKind::kNext);
    case BlockKind::kDo:
      return is(TokenKind::kLoop);
    case BlockKind::kWhile:
      return is(TokenKind::kWend);
    case BlockKind::kWith:
    case BlockKind::kProcedure:
      return is(TokenKind::kEnd);
  }
  return false;
}

// The end of another block says that this one's is missing. "Loop" and "Next" are told by their own errors.
void Parser::refuse_other_end(BlockKind kind) const {
  const bool other_end = is(TokenKind::kEnd) || is(TokenKind::kElse) || is(TokenKind::kElseIf) ||
                         is(TokenKind::kCase) || is(TokenKind::kWend);
  if (!other_end) return;
  switch (kind) {
    case BlockKind::kNone:
      fail(1024);
    case BlockKind::kFor:
      fail(1020);
    case BlockKind::kDo:
      fail(1019);
    case BlockKind::kWhile:
      fail(1018);
    default:
      fail(1014);
  }
}

// Statements up to what ends a block of that kind, or to the end of the text.
void Parser::block(ast::Block& body, BlockKind kind) {
  const Nesting nesting(*this);
  const int inline_ifs = std::exchange(around_.inline_ifs, 0);
  for (skip_separators(); !at_block_end(kind); skip_separators()) {
    refuse_other_end(kind);
    statement(body);
    // "For … : If a Then b : Next": the colon that ends the statement has been read with the If.
    if (!after_colon_) expect_statement_end();
  }
  around_.inline_ifs = inline_ifs;
}

void Parser::expect_end(TokenKind what, std::int32_t error) {
  expect(TokenKind::kEnd, 1014);
  expect(what, error);
}

ast::Stmt* Parser::if_statement() {
  const Nesting nesting(*this);
  auto* const node = make<ast::If>(ast::StmtKind::kIf, token_.at);
  auto* const branch = next_branch(node);
  bool same_line = !is(TokenKind::kNewline) && !is(TokenKind::kEndOfText);
  while (accept(TokenKind::kColon)) same_line = !is(TokenKind::kNewline);
  if (same_line) {
    inline_if(node, branch);
  } else {
    block_if(node, branch);
  }
  return node;
}

// If condition Then, ElseIf condition Then, Else.
ast::IfBranch* Parser::next_branch(ast::If* statement) {
  auto* const branch = arena_.make<ast::IfBranch>();
  branch->at = token_.at;
  const bool has_condition = !is(TokenKind::kElse);
  advance();
  if (has_condition) {
    branch->condition = expression();
    expect(TokenKind::kThen, 1017);
  }
  statement->branches.append(branch);
  return branch;
}

void Parser::block_if(ast::If* statement, ast::IfBranch* branch) {
  for (;;) {
    block(branch->body, BlockKind::kIf);
    if (is(TokenKind::kEnd) || is(TokenKind::kEndOfText)) break;
    if (branch->condition == nullptr) fail(1014);  // behind Else comes nothing but End If
    if (!token_.first_on_line) fail(1042);
    branch = next_branch(statement);
  }
  expect_end(TokenKind::kIf, 1012);
}

// If a Then b : c ElseIf d Then e Else f End If, on one line; the last two words may be missing.
void Parser::inline_if(ast::If* statement, ast::IfBranch* branch) {
  ++around_.inline_ifs;
  inline_statements(branch->body);
  while ((is(TokenKind::kElse) || is(TokenKind::kElseIf)) && branch->condition != nullptr) {
    branch = next_branch(statement);
    inline_statements(branch->body);
  }
  if (is(TokenKind::kEnd) && peek_kind() == TokenKind::kIf) {
    advance();
    advance();
  }
  --around_.inline_ifs;
}

bool Parser::at_inline_end() const {
  switch (token_.kind) {
    case TokenKind::kNewline:
    case TokenKind::kEndOfText:
    case TokenKind::kElse:
    case TokenKind::kElseIf:
    case TokenKind::kEnd:
    case TokenKind::kNext:
    case TokenKind::kLoop:
    case TokenKind::kWend:
    case TokenKind::kCase:
      return true;
    default:
      return false;
  }
}

void Parser::inline_statements(ast::Block& body) {
  do {
    while (accept(TokenKind::kColon)) {
    }
    if (at_inline_end()) return;
    statement(body);
    if (!after_colon_) expect_statement_end();
  } while (is(TokenKind::kColon));
}

ast::Stmt* Parser::select_statement() {
  auto* const node = make<ast::Select>(ast::StmtKind::kSelect, token_.at);
  advance();
  expect(TokenKind::kCase, 1021);
  node->subject = expression();
  expect_statement_end();
  skip_separators();
  bool has_else = false;
  while (is(TokenKind::kCase) && !has_else) {
    ast::CaseBranch* const branch = case_branch();
    has_else = branch->values.empty();
    node->cases.append(branch);
  }
  if (!is(TokenKind::kEnd) && !is(TokenKind::kEndOfText) && !has_else) fail(1021);
  expect_end(TokenKind::kSelect, 1022);
  return node;
}

ast::CaseBranch* Parser::case_branch() {
  auto* const branch = arena_.make<ast::CaseBranch>();
  branch->at = token_.at;
  advance();
  if (!accept(TokenKind::kElse)) {
    do {
      branch->values.append(expression());
    } while (accept(TokenKind::kComma));
    // 'Case "red" color = 1' needs no colon.
    if (!at_statement_end() && !begins_statement()) fail(1025);
  }
  block(branch->body, BlockKind::kSelect);
  return branch;
}

// A variable of its own: no element, no member, and none that a loop around this one counts with.
ast::Expr* Parser::loop_variable() {
  if (!at_name()) fail(1010);
  const Position at = token_.at;
  const std::string_view variable = token_.text;
  ast::Expr* const node = name();
  if (is(TokenKind::kLeftParenthesis) || is(TokenKind::kDot)) fail(1040, at);
  for (const OuterLoop* loop = around_.for_loops; loop != nullptr; loop = loop->outer) {
    if (same_word(loop->variable, variable)) fail(1040, at);
  }
  return node;
}

void Parser::loop_body(ast::Block& body, const ast::Expr* variable, Position& next_at) {
  expect_statement_end();
  const OuterLoop loop{static_cast<const ast::Name*>(variable)->name, around_.for_loops};
  around_.for_loops = &loop;
  block(body, BlockKind::kFor);
  around_.for_loops = loop.outer;
  next_at = token_.at;
  expect(TokenKind::kNext, 1020);
}

ast::Stmt* Parser::for_statement() {
  const Position at = token_.at;
  advance();
  if (is(TokenKind::kEach)) return for_each_statement(at);
  auto* const node = make<ast::For>(ast::StmtKind::kFor, at);
  node->variable = loop_variable();
  expect(TokenKind::kEqual, 1011);
  node->from = expression();
  expect(TokenKind::kTo, 1013);
  node->to = expression();
  if (accept(TokenKind::kStep)) node->step = expression();
  loop_body(node->body, node->variable, node->next_at);
  return node;
}

ast::Stmt* Parser::for_each_statement(Position at) {
  auto* const node = make<ast::ForEach>(ast::StmtKind::kForEach, at);
  advance();
  node->variable = loop_variable();
  expect(TokenKind::kIn, 1046);
  node->collection = expression();
  loop_body(node->body, node->variable, node->next_at);
  return node;
}

// While or Until with a condition, where there is one.
void Parser::do_test(ast::Do* loop, ast::DoTest while_test, ast::DoTest until_test) {
  if (!is(TokenKind::kWhile) && !is(TokenKind::kUntil)) {
    if (!at_statement_end()) fail(1028);
    return;
  }
  loop->test = is(TokenKind::kWhile) ? while_test : until_test;
  advance();
  loop->condition = expression();
}

ast::Stmt* Parser::do_statement() {
  auto* const node = make<ast::Do>(ast::StmtKind::kDo, token_.at);
  advance();
  do_test(node, ast::DoTest::kWhileBefore, ast::DoTest::kUntilBefore);
  expect_statement_end();
  ++around_.do_loops;
  block(node->body, BlockKind::kDo);
  --around_.do_loops;
  node->end_at = token_.at;
  expect(TokenKind::kLoop, 1019);
  if (node->test == ast::DoTest::kNone) do_test(node, ast::DoTest::kWhileAfter, ast::DoTest::kUntilAfter);
  return node;
}

ast::Stmt* Parser::while_statement() {
  auto* const node = make<ast::Do>(ast::StmtKind::kDo, token_.at);
  advance();
  node->is_while_wend = true;
  node->test = ast::DoTest::kWhileBefore;
  node->condition = expression();
  expect_statement_end();
  block(node->body, BlockKind::kWhile);
  node->end_at = token_.at;
  expect(TokenKind::kWend, 1018);
  return node;
}

ast::Stmt* Parser::with_statement() {
  auto* const node = make<ast::With>(ast::StmtKind::kWith, token_.at);
  advance();
  node->subject = expression();
  expect_statement_end();
  ++around_.withs;
  block(node->body, BlockKind::kWith);
  --around_.withs;
  expect_end(TokenKind::kWith, 1029);
  return node;
}

}  // namespace pv::vbscript
