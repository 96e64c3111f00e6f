#include "vbscript/parser.h"

#include "vbscript/parser_state.h"

namespace pv::vbscript {

Parser::Parser(std::string_view source, Arena& arena, ParseOptions options)
    : lexer_(source, arena), arena_(arena), inside_class_(options.inside_class) {
  if (source.size() > kMaxSourceBytes) fail(1001, {1, 1});
}

// The kind of the token behind the current one.
TokenKind Parser::peek_kind() const {
  Lexer ahead = lexer_;
  Token token;
  ahead.next(token);
  return token.kind;
}

bool Parser::accept(TokenKind kind) {
  if (!is(kind)) return false;
  advance();
  return true;
}

void Parser::expect(TokenKind kind, std::int32_t error) {
  if (!accept(kind)) fail(error);
}

std::string_view Parser::expect_name() {
  if (!at_name()) fail(1010);
  const std::string_view name = token_.text;
  advance();
  return name;
}

bool Parser::at_statement_end() const {
  switch (token_.kind) {
    case TokenKind::kNewline:
    case TokenKind::kColon:
    case TokenKind::kEndOfText:
      return true;
    case TokenKind::kElse:
    case TokenKind::kElseIf:
    case TokenKind::kEnd:
      return around_.inline_ifs > 0;  // "If a Then b Else c End If"
    default:
      return false;
  }
}

void Parser::expect_statement_end() const {
  if (!at_statement_end()) fail(1025);
}

void Parser::skip_separators() {
  while (is(TokenKind::kNewline) || is(TokenKind::kColon)) advance();
}

const ast::Program* Parser::program() {
  program_ = arena_.make<ast::Program>();
  advance();
  block(program_->body, BlockKind::kNone);
  return program_;
}

const ast::Expr* Parser::lone_expression() {
  advance();
  skip_separators();
  ast::Expr* const result = expression();
  skip_separators();
  if (!is(TokenKind::kEndOfText)) fail(1025);
  return result;
}

namespace {

// The arena does not know where the program text has got to.
template <typename Parse>
auto with_position(Parser& parser, Parse parse) {
  try {
    return parse();
  } catch (CompileError& error) {
    if (error.at.line == 0) error.at = parser.position();
    if (error.at.line == 0) error.at = {1, 1};
    throw;
  }
}

}  // namespace

const ast::Program* parse_program(std::string_view source, Arena& arena, ParseOptions options) {
  Parser parser(source, arena, options);
  return with_position(parser, [&] { return parser.program(); });
}

const ast::Expr* parse_expression(std::string_view source, Arena& arena, ParseOptions options) {
  Parser parser(source, arena, options);
  return with_position(parser, [&] { return parser.lone_expression(); });
}

}  // namespace pv::vbscript
