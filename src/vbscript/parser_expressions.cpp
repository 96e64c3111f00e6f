// Operators by precedence climbing: chains to the left are read in a loop, however long they are.
#include "vbscript/parser_state.h"

namespace pv::vbscript {
namespace {

struct OperatorEntry {
  ast::BinaryOp op;
  int precedence = 0;  // 0: no operator
};

constexpr int kPrecedenceOfNot = 6;
constexpr int kComparison = 7;
constexpr int kPrecedenceOfSign = 13;
constexpr int kPower = 14;
constexpr int kLowest = 1;

OperatorEntry operator_of(TokenKind kind) {
  switch (kind) {
    case TokenKind::kPower:
      return {ast::BinaryOp::kPower, kPower};
    case TokenKind::kMultiply:
      return {ast::BinaryOp::kMultiply, 12};
    case TokenKind::kDivide:
      return {ast::BinaryOp::kDivide, 12};
    case TokenKind::kDivideWhole:
      return {ast::BinaryOp::kDivideWhole, 11};
    case TokenKind::kMod:
      return {ast::BinaryOp::kModulo, 10};
    case TokenKind::kPlus:
      return {ast::BinaryOp::kAdd, 9};
    case TokenKind::kMinus:
      return {ast::BinaryOp::kSubtract, 9};
    case TokenKind::kConcatenate:
      return {ast::BinaryOp::kConcatenate, 8};
    case TokenKind::kEqual:
      return {ast::BinaryOp::kEqual, kComparison};
    case TokenKind::kNotEqual:
      return {ast::BinaryOp::kNotEqual, kComparison};
    case TokenKind::kLess:
      return {ast::BinaryOp::kLess, kComparison};
    case TokenKind::kGreater:
      return {ast::BinaryOp::kGreater, kComparison};
    case TokenKind::kLessEqual:
      return {ast::BinaryOp::kLessEqual, kComparison};
    case TokenKind::kGreaterEqual:
      return {ast::BinaryOp::kGreaterEqual, kComparison};
    case TokenKind::kIs:
      return {ast::BinaryOp::kIs, kComparison};
    case TokenKind::kAnd:
      return {ast::BinaryOp::kAnd, 5};
    case TokenKind::kOr:
      return {ast::BinaryOp::kOr, 4};
    case TokenKind::kXor:
      return {ast::BinaryOp::kXor, 3};
    case TokenKind::kEqv:
      return {ast::BinaryOp::kEqv, 2};
    case TokenKind::kImp:
      return {ast::BinaryOp::kImp, kLowest};
    default:
      return {ast::BinaryOp::kPower, 0};
  }
}

// Whether an expression can begin so.
bool begins_expression(const Token& token) {
  switch (token.kind) {
    case TokenKind::kIdentifier:
    case TokenKind::kInteger:
    case TokenKind::kLong:
    case TokenKind::kDouble:
    case TokenKind::kDate:
    case TokenKind::kText:
    case TokenKind::kLeftParenthesis:
    case TokenKind::kDot:
    case TokenKind::kPlus:
    case TokenKind::kMinus:
    case TokenKind::kNot:
    case TokenKind::kNew:
    case TokenKind::kMe:
    case TokenKind::kEmpty:
    case TokenKind::kNull:
    case TokenKind::kNothing:
    case TokenKind::kTrue:
    case TokenKind::kFalse:
      return true;
    default:
      return token.kind >= kFirstContextualWord;
  }
}

}  // namespace

bool Parser::at_operator() const {
  return operator_of(token_.kind).precedence != 0;
}

// Where no expression begins at all it is missing; behind an operator it is the syntax that is wrong.
ast::Expr* Parser::expression() {
  if (!begins_expression(token_)) fail(1023);
  return binary(operand(), kLowest);
}

// Joins to `left` whatever operators of at least the precedence `lowest` follow.
ast::Expr* Parser::binary(ast::Expr* left, int lowest) {
  for (OperatorEntry entry = operator_of(token_.kind); entry.precedence >= lowest;) {
    const Position at = token_.at;
    advance();
    ast::Expr* right = operand();
    OperatorEntry next = operator_of(token_.kind);
    if (next.precedence > entry.precedence) {
      const Nesting nesting(*this);
      right = binary(right, entry.precedence + 1);
      next = operator_of(token_.kind);
    }
    auto* const node = make<ast::Binary>(ast::ExprKind::kBinary, at);
    node->op = entry.op;
    node->left = left;
    node->right = right;
    left = node;
    entry = next;
  }
  return left;
}

ast::Expr* Parser::operand() {
  switch (token_.kind) {
    case TokenKind::kMinus:
      return unary(ast::UnaryOp::kNegate, kPrecedenceOfSign);
    case TokenKind::kPlus:
      return unary(ast::UnaryOp::kPlus, kPrecedenceOfSign);
    case TokenKind::kNot:
      return unary(ast::UnaryOp::kNot, kPrecedenceOfNot);
    default:
      return primary();
  }
}

ast::Expr* Parser::unary(ast::UnaryOp op, int lowest) {
  const Nesting nesting(*this);
  auto* const node = make<ast::Unary>(ast::ExprKind::kUnary, token_.at);
  advance();
  node->op = op;
  node->operand = binary(operand(), lowest);
  return node;
}

ast::Expr* Parser::primary() {
  if (is_literal(token_.kind)) return literal();
  switch (token_.kind) {
    case TokenKind::kLeftParenthesis:
      return postfixes(parenthesised());
    case TokenKind::kDot:
      return postfixes(with_member());
    case TokenKind::kMe:
      return postfixes(me());
    case TokenKind::kNew:
      return new_object();
    default:
      break;
  }
  if (!at_name()) fail(1002);
  return postfixes(name());
}

ast::Expr* Parser::literal() {
  switch (token_.kind) {
    case TokenKind::kInteger:
      return literal(ast::LiteralKind::kInteger);
    case TokenKind::kLong:
      return literal(ast::LiteralKind::kLong);
    case TokenKind::kDouble:
      return literal(ast::LiteralKind::kDouble);
    case TokenKind::kDate:
      return literal(ast::LiteralKind::kDate);
    case TokenKind::kText:
      return literal(ast::LiteralKind::kText);
    case TokenKind::kNull:
      return literal(ast::LiteralKind::kNull);
    case TokenKind::kNothing:
      return literal(ast::LiteralKind::kNothing);
    case TokenKind::kTrue:
      return literal(ast::LiteralKind::kTrue);
    case TokenKind::kFalse:
      return literal(ast::LiteralKind::kFalse);
    default:
      return literal(ast::LiteralKind::kEmpty);
  }
}

ast::Expr* Parser::literal(ast::LiteralKind kind) {
  auto* const node = make<ast::Literal>(ast::ExprKind::kLiteral, token_.at);
  node->literal = kind;
  node->number = token_.number;
  node->real = token_.real;
  node->text = token_.text;
  advance();
  return node;
}

ast::Expr* Parser::new_object() {
  auto* const node = make<ast::New>(ast::ExprKind::kNew, token_.at);
  advance();
  node->class_name = expect_name();
  return node;
}

ast::Expr* Parser::parenthesised() {
  const Nesting nesting(*this);
  auto* const node = make<ast::Parenthesised>(ast::ExprKind::kParenthesised, token_.at);
  advance();
  node->operand = expression();
  expect(TokenKind::kRightParenthesis, 1006);
  return node;
}

ast::Expr* Parser::me() {
  if (!inside_class_) fail(1037);
  auto* const node = make<ast::Expr>(ast::ExprKind::kMe, token_.at);
  advance();
  return node;
}

ast::Expr* Parser::name() {
  auto* const node = make<ast::Name>(ast::ExprKind::kName, token_.at);
  node->name = token_.text;
  advance();
  return node;
}

ast::Expr* Parser::with_member() {
  return member_of(make<ast::Expr>(ast::ExprKind::kWithSubject, token_.at));
}

ast::Expr* Parser::member_of(ast::Expr* object) {
  auto* const node = make<ast::Member>(ast::ExprKind::kMember, token_.at);
  advance();
  node->object = object;
  node->name = expect_name();
  return node;
}

ast::Expr* Parser::index_of(ast::Expr* callee, ast::List<ast::Expr> arguments) {
  auto* const node = make<ast::Index>(ast::ExprKind::kIndex, callee->at);
  node->callee = callee;
  node->arguments = arguments;
  return node;
}

ast::Expr* Parser::postfixes(ast::Expr* subject) {
  for (;;) {
    if (is(TokenKind::kLeftParenthesis)) {
      subject = index_of(subject, parenthesised_arguments());
    } else if (is(TokenKind::kDot)) {
      subject = member_of(subject);
    } else {
      return subject;
    }
  }
}

// One argument, or what stands for one that is left out.
ast::Expr* Parser::argument() {
  if (is(TokenKind::kComma) || is(TokenKind::kRightParenthesis) || at_statement_end()) {
    return make<ast::Expr>(ast::ExprKind::kOmitted, token_.at);
  }
  return expression();
}

ast::List<ast::Expr> Parser::parenthesised_arguments() {
  const Nesting nesting(*this);
  ast::List<ast::Expr> arguments;
  advance();
  if (accept(TokenKind::kRightParenthesis)) return arguments;
  do {
    arguments.append(argument());
  } while (accept(TokenKind::kComma));
  expect(TokenKind::kRightParenthesis, 1006);
  return arguments;
}

}  // namespace pv::vbscript
