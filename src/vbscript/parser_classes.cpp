// Classes and their members.
#include "vbscript/characters.h"
#include "vbscript/parser_state.h"

namespace pv::vbscript {

// "Property" is a name too; with Get, Let or Set behind it, it begins a property.
bool Parser::at_property() const {
  if (!is(TokenKind::kProperty)) return false;
  const TokenKind next = peek_kind();
  return next == TokenKind::kGet || next == TokenKind::kLet || next == TokenKind::kSet;
}

void Parser::class_statement() {
  if (procedure_ != nullptr) fail(1002);
  auto* const node = make<ast::Class>(ast::StmtKind::kClass, token_.at);
  advance();
  const Position name_at = token_.at;
  node->name = expect_name();
  declare(node->name, name_at, kDeclaresVariable);
  expect_statement_end();
  class_ = node;
  class_has_default_ = false;
  class_names_.clear();
  const bool was_inside = inside_class_;
  inside_class_ = true;
  for (skip_separators(); !is(TokenKind::kEnd) && !is(TokenKind::kEndOfText); skip_separators()) {
    node->members.append(class_member());
    expect_statement_end();
  }
  inside_class_ = was_inside;
  class_ = nullptr;
  node->end_at = token_.at;
  expect_end(TokenKind::kClass, 1047);
  program_->body.append(node);
}

ast::Stmt* Parser::class_member() {
  switch (token_.kind) {
    case TokenKind::kDim:
      return dim_statement(token_.at, ast::Visibility::kDefault);
    case TokenKind::kPublic:
    case TokenKind::kPrivate:
      return class_member_with_visibility();
    case TokenKind::kSub:
    case TokenKind::kFunction:
    case TokenKind::kProperty:
      return procedure(token_.at, ast::Visibility::kDefault, false);
    case TokenKind::kDefault:
      fail(1057);
    default:
      fail(1002);
  }
}

ast::Stmt* Parser::class_member_with_visibility() {
  const Position at = token_.at;
  const ast::Visibility visibility = is(TokenKind::kPublic) ? ast::Visibility::kPublic : ast::Visibility::kPrivate;
  advance();
  if (is(TokenKind::kSub) || is(TokenKind::kFunction) || is(TokenKind::kProperty)) {
    return procedure(at, visibility, false);
  }
  if (is(TokenKind::kConst)) fail(1002);
  if (is(TokenKind::kDefault)) return default_member(at, visibility);
  return dim_statement(at, visibility);
}

// Public Default Function, Sub or Property Get: one in a class.
ast::Stmt* Parser::default_member(Position at, ast::Visibility visibility) {
  const Position default_at = token_.at;
  advance();
  if (visibility != ast::Visibility::kPublic) fail(1057, default_at);
  if (!is(TokenKind::kSub) && !is(TokenKind::kFunction) && !is(TokenKind::kProperty)) fail(1056);
  if (is(TokenKind::kProperty) && peek_kind() != TokenKind::kGet) {
    advance();
    fail(at_name() || at_statement_end() ? 1049 : 1058);
  }
  if (class_has_default_) fail(1052, default_at);
  class_has_default_ = true;
  return procedure(at, visibility, true);
}

// Get, Let and Set of one name go together and agree on the number of arguments.
void Parser::declare_member(const ast::Procedure& procedure, Position at) {
  unsigned uses = kDeclaresProcedure;
  unsigned others = 0;
  std::uint32_t arguments = procedure.parameters.size;
  if (procedure.what >= ast::ProcedureKind::kPropertyGet) {
    uses = procedure.what == ast::ProcedureKind::kPropertyGet   ? kDeclaresGet
           : procedure.what == ast::ProcedureKind::kPropertyLet ? kDeclaresLet
                                                                : kDeclaresSet;
    others = (kDeclaresGet | kDeclaresLet | kDeclaresSet) & ~uses;
    if (uses != kDeclaresGet && arguments-- == 0) fail(1054, at);
  }
  const bool is_event = same_word(procedure.name, "Class_Initialize") || same_word(procedure.name, "Class_Terminate");
  if (is_event && procedure.what == ast::ProcedureKind::kSub && arguments != 0) fail(1053, at);
  DeclaredName& declared = class_names_.at(procedure.name);
  if ((declared.uses & ~others) != 0) fail(1041, at);
  if (declared.uses != 0 && declared.arguments != arguments) fail(1051, at);
  declared.uses |= uses;
  declared.arguments = arguments;
}

}  // namespace pv::vbscript
