// Variables, constants and procedures.
#include <utility>

#include "vbscript/parser_state.h"

namespace pv::vbscript {

// Procedures of the same name may follow one another at script level: the last one counts.
void Parser::declare(std::string_view name, Position at, unsigned uses) {
  const bool in_script = procedure_ == nullptr && class_ == nullptr;
  DeclaredNames& names = in_script ? script_names_ : procedure_ != nullptr ? procedure_names_ : class_names_;
  DeclaredName& declared = names.at(name);
  const bool may_follow = in_script && uses == kDeclaresProcedure && declared.uses == kDeclaresProcedure;
  if (declared.uses != 0 && !may_follow) fail(1041, at);
  declared.uses |= uses;
}

ast::Stmt* Parser::dim_statement(Position at, ast::Visibility visibility) {
  auto* const node = make<ast::Dim>(ast::StmtKind::kDim, at);
  node->visibility = visibility;
  if (is(TokenKind::kDim)) advance();
  do {
    node->variables.append(variable());
  } while (accept(TokenKind::kComma));
  return node;
}

ast::Variable* Parser::variable() {
  auto* const node = arena_.make<ast::Variable>();
  node->at = token_.at;
  node->name = expect_name();
  declare(node->name, node->at, kDeclaresVariable);
  if (accept(TokenKind::kLeftParenthesis)) {
    node->is_array = true;
    if (!is(TokenKind::kRightParenthesis)) node->bounds = bounds();
    expect(TokenKind::kRightParenthesis, 1006);
  }
  return node;
}

// Upper bounds of a fixed array: numbers without any operator.
ast::List<ast::Expr> Parser::bounds() {
  ast::List<ast::Expr> list;
  do {
    if (!is(TokenKind::kInteger) && !is(TokenKind::kLong)) fail(1026);
    list.append(literal());
  } while (accept(TokenKind::kComma));
  return list;
}

ast::Stmt* Parser::redim_statement() {
  auto* const node = make<ast::ReDim>(ast::StmtKind::kReDim, token_.at);
  advance();
  node->preserve = accept(TokenKind::kPreserve);
  do {
    node->targets.append(redim_target());
  } while (accept(TokenKind::kComma));
  return node;
}

// name(bounds), object.member(bounds): the last parentheses are the bounds.
ast::ReDimTarget* Parser::redim_target() {
  if (!at_name() && !is(TokenKind::kDot) && !is(TokenKind::kMe)) fail(1010);
  const ast::Expr* const target = primary();
  if (target->kind != ast::ExprKind::kIndex) fail(1005);
  const auto* const index = static_cast<const ast::Index*>(target);
  if (index->arguments.empty()) fail(1023);
  for (const ast::Expr* bound = index->arguments.first; bound != nullptr; bound = bound->next) {
    if (bound->kind == ast::ExprKind::kOmitted) fail(1023, bound->at);
  }
  auto* const node = arena_.make<ast::ReDimTarget>();
  node->target = index->callee;
  node->bounds = index->arguments;
  return node;
}

ast::Stmt* Parser::const_statement(Position at, ast::Visibility visibility) {
  auto* const node = make<ast::Const>(ast::StmtKind::kConst, at);
  node->visibility = visibility;
  advance();
  do {
    node->items.append(constant());
  } while (accept(TokenKind::kComma));
  return node;
}

ast::ConstItem* Parser::constant() {
  auto* const node = arena_.make<ast::ConstItem>();
  node->at = token_.at;
  node->name = expect_name();
  declare(node->name, node->at, kDeclaresVariable);
  expect(TokenKind::kEqual, 1011);
  node->value = constant_value();
  return node;
}

// A literal; a number may have any number of signs in front. No operators: VBScript folds no constants.
ast::Expr* Parser::constant_value() {
  if (is_literal(token_.kind)) return literal();
  switch (token_.kind) {
    case TokenKind::kPlus:
    case TokenKind::kMinus:
      break;
    default:
      fail(1045);
  }
  const Nesting nesting(*this);
  auto* const node = make<ast::Unary>(ast::ExprKind::kUnary, token_.at);
  node->op = is(TokenKind::kMinus) ? ast::UnaryOp::kNegate : ast::UnaryOp::kPlus;
  advance();
  const bool numeric = is(TokenKind::kInteger) || is(TokenKind::kLong) || is(TokenKind::kDouble) ||
                       is(TokenKind::kPlus) || is(TokenKind::kMinus);
  if (!numeric) fail(1045);
  node->operand = constant_value();
  return node;
}

// Public and Private at script level.
ast::Stmt* Parser::visibility_statement() {
  const Position at = token_.at;
  if (procedure_ != nullptr) fail(1002);
  const ast::Visibility visibility = is(TokenKind::kPublic) ? ast::Visibility::kPublic : ast::Visibility::kPrivate;
  advance();
  if (is(TokenKind::kConst)) return const_statement(at, visibility);
  if (is(TokenKind::kSub) || is(TokenKind::kFunction)) return procedure(at, visibility, false);
  if (at_property()) fail(1048);
  if (is(TokenKind::kDefault)) {
    const TokenKind next = peek_kind();
    if (next == TokenKind::kSub || next == TokenKind::kFunction || next == TokenKind::kProperty) fail(1048);
  }
  return dim_statement(at, visibility);
}

ast::ProcedureKind Parser::procedure_kind() {
  const TokenKind word = token_.kind;
  advance();
  if (word == TokenKind::kSub) return ast::ProcedureKind::kSub;
  if (word == TokenKind::kFunction) return ast::ProcedureKind::kFunction;
  const TokenKind use = token_.kind;
  if (use != TokenKind::kGet && use != TokenKind::kLet && use != TokenKind::kSet) fail(1049);
  advance();
  if (use == TokenKind::kGet) return ast::ProcedureKind::kPropertyGet;
  return use == TokenKind::kLet ? ast::ProcedureKind::kPropertyLet : ast::ProcedureKind::kPropertySet;
}

// At "Sub", "Function" or "Property"; `at` is where the statement begins, perhaps with Public.
ast::Procedure* Parser::procedure(Position at, ast::Visibility visibility, bool is_default) {
  if (procedure_ != nullptr) fail(1002, at);
  auto* const node = make<ast::Procedure>(ast::StmtKind::kProcedure, at);
  node->visibility = visibility;
  node->is_default = is_default;
  node->what = procedure_kind();
  const Position name_at = token_.at;
  node->name = expect_name();
  if (class_ == nullptr) declare(node->name, name_at, kDeclaresProcedure);
  procedure_names_.clear();
  procedure_ = node;
  if (node->what == ast::ProcedureKind::kFunction) declare(node->name, name_at, kDeclaresVariable);
  parameters(node);
  if (class_ != nullptr) declare_member(*node, name_at);
  expect_statement_end();
  procedure_body(node);
  procedure_ = nullptr;
  return node;
}

void Parser::parameters(ast::Procedure* procedure) {
  if (!accept(TokenKind::kLeftParenthesis) || accept(TokenKind::kRightParenthesis)) return;
  do {
    procedure->parameters.append(parameter());
  } while (accept(TokenKind::kComma));
  expect(TokenKind::kRightParenthesis, 1006);
}

ast::Parameter* Parser::parameter() {
  auto* const node = arena_.make<ast::Parameter>();
  node->by_value = accept(TokenKind::kByVal);
  if (!node->by_value) accept(TokenKind::kByRef);
  node->at = token_.at;
  node->name = expect_name();
  declare(node->name, node->at, kDeclaresVariable);
  if (accept(TokenKind::kLeftParenthesis)) {
    node->is_array = true;
    expect(TokenKind::kRightParenthesis, 1006);
  }
  return node;
}

// Loops and With around the procedure do not reach into it.
void Parser::procedure_body(ast::Procedure* procedure) {
  const Surroundings around = std::exchange(around_, {});
  block(procedure->body, BlockKind::kProcedure);
  around_ = around;
  procedure->end_at = token_.at;
  expect(TokenKind::kEnd, 1014);
  procedure_end(procedure->what);
}

void Parser::procedure_end(ast::ProcedureKind kind) {
  switch (kind) {
    case ast::ProcedureKind::kSub:
      expect(TokenKind::kSub, 1016);
      break;
    case ast::ProcedureKind::kFunction:
      expect(TokenKind::kFunction, 1015);
      break;
    default:
      expect(TokenKind::kProperty, 1050);
  }
}

}  // namespace pv::vbscript
