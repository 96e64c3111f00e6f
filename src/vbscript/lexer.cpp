#include "vbscript/lexer.h"

#include <algorithm>
#include <optional>

#include "vbscript/characters.h"
#include "vbscript/conversions.h"
#include "vbscript/keywords.h"
#include "vbscript/number_literal.h"

namespace pv::vbscript {
namespace {

[[noreturn]] void fail(std::int32_t number, Position at) {
  throw CompileError{number, at};
}

void require_length(std::string_view name, Position at) {
  if (name.size() > kMaxIdentifierBytes) fail(1030, at);
}

std::string_view without_doubled_quotes(std::string_view raw, std::size_t doubled, Arena& arena) {
  char* const bytes = arena.make_text(raw.size() - doubled);
  char* end = bytes;
  for (std::size_t i = 0; i < raw.size(); ++i) {
    *end++ = raw[i];
    if (raw[i] == '"') ++i;
  }
  return {bytes, raw.size() - doubled};
}

}  // namespace

char Lexer::peek(std::size_t ahead) const {
  // NUL is what no token begins with, so it can stand for the end too.
  return offset_ + ahead < source_.size() ? source_[offset_ + ahead] : '\0';
}

Position Lexer::at(std::size_t offset) const {
  return {line_, static_cast<std::uint32_t>(offset - line_start_) + 1};
}

void Lexer::end_line() {
  offset_ += peek() == '\r' && peek(1) == '\n' ? 2 : 1;
  line_start_ = offset_;
  ++line_;
}

// " _" at the end of a line: the statement goes on in the next one.
bool Lexer::skip_continuation() {
  if (peek() != '_') return false;
  std::size_t ahead = 1;
  while (is_blank(peek(ahead))) ++ahead;
  if (offset_ + ahead < source_.size() && !is_line_end(peek(ahead))) return false;
  offset_ += ahead;
  if (offset_ < source_.size()) end_line();
  return true;
}

bool Lexer::skip_blanks() {
  const std::size_t start = offset_;
  do {
    while (is_blank(peek())) ++offset_;
  } while (skip_continuation());
  return offset_ != start;
}

void Lexer::skip_to_line_end() {
  while (offset_ < source_.size() && !is_line_end(source_[offset_])) ++offset_;
}

void Lexer::newline(Token& token) {
  if (offset_ >= source_.size()) return;
  token.kind = TokenKind::kNewline;
  end_line();
  at_line_start_ = true;
}

void Lexer::comment(Token& token) {
  skip_to_line_end();
  token.kind = TokenKind::kEndOfText;
  token.at = here();
  newline(token);
}

void Lexer::word(Token& token) {
  const std::size_t start = offset_;
  std::size_t end = start + 1;
  while (end < source_.size() && is_name_part(source_[end])) ++end;
  offset_ = end;
  token.text = source_.substr(start, end - start);
  require_length(token.text, token.at);
  token.kind = after_dot_ ? TokenKind::kIdentifier : keyword_kind(token.text);
  if (token.kind == TokenKind::kRem) comment(token);
}

// "[any text]" is a name that may be spelt like a reserved word or hold any character but "]".
void Lexer::bracketed_name(Token& token) {
  const std::size_t start = ++offset_;
  while (offset_ < source_.size() && source_[offset_] != ']' && !is_line_end(source_[offset_])) ++offset_;
  if (peek() != ']') fail(1007, here());
  token.text = source_.substr(start, offset_ - start);
  require_length(token.text, token.at);
  ++offset_;
  token.kind = TokenKind::kIdentifier;
}

void Lexer::text(Token& token) {
  const std::size_t start = ++offset_;
  std::size_t doubled = 0;
  for (;; ++offset_) {
    if (offset_ >= source_.size() || is_line_end(source_[offset_])) fail(1033, here());
    if (source_[offset_] != '"') continue;
    if (peek(1) != '"') break;
    ++doubled;
    ++offset_;
  }
  const std::string_view raw = source_.substr(start, offset_ - start);
  ++offset_;
  token.kind = TokenKind::kText;
  token.text = doubled == 0 ? raw : without_doubled_quotes(raw, doubled, arena_);
}

void Lexer::date(Token& token) {
  const std::size_t start = ++offset_;
  while (offset_ < source_.size() && source_[offset_] != '#' && !is_line_end(source_[offset_])) ++offset_;
  if (peek() != '#') fail(1002, token.at);
  const std::optional<double> days = date_in(source_.substr(start, offset_ - start));
  if (!days) fail(1002, token.at);
  ++offset_;
  token.kind = TokenKind::kDate;
  token.real = *days;
}

void Lexer::number(Token& token) {
  const NumberLiteral literal = read_number(source_.substr(offset_));
  if (!literal.valid) fail(1031, token.at);
  offset_ += literal.length;
  token.kind = literal.kind;
  token.number = literal.number;
  token.real = literal.real;
}

// Without a digit behind it "&H" joins texts: "a" &Hx.
bool Lexer::starts_radix() const {
  return (lower(peek(1)) == 'h' && digit_value(peek(2)) < 16) || (lower(peek(1)) == 'o' && digit_value(peek(2)) < 8);
}

void Lexer::radix_number(Token& token) {
  const NumberLiteral literal = read_radix_number(source_.substr(offset_));
  if (!literal.valid) fail(1031, token.at);
  offset_ += literal.length;
  token.kind = literal.kind;
  token.number = literal.number;
}

// The second half of "<=" and the like may stand behind blanks.
bool Lexer::skip_symbol(char wanted) {
  std::size_t ahead = 0;
  while (is_blank(peek(ahead))) ++ahead;
  if (peek(ahead) != wanted) return false;
  offset_ += ahead + 1;
  return true;
}

// "<", ">" and "=" join in any order.
void Lexer::symbol_or_joined(Token& token, TokenKind alone) {
  token.kind = alone;
  if (alone != TokenKind::kLess && skip_symbol('<')) {
    token.kind = alone == TokenKind::kEqual ? TokenKind::kLessEqual : TokenKind::kNotEqual;
  } else if (alone != TokenKind::kGreater && skip_symbol('>')) {
    token.kind = alone == TokenKind::kEqual ? TokenKind::kGreaterEqual : TokenKind::kNotEqual;
  } else if (alone != TokenKind::kEqual && skip_symbol('=')) {
    token.kind = alone == TokenKind::kLess ? TokenKind::kLessEqual : TokenKind::kGreaterEqual;
  }
}

void Lexer::symbol(Token& token) {
  switch (source_[offset_++]) {
    case ':':
      token.kind = TokenKind::kColon;
      break;
    case '(':
      token.kind = TokenKind::kLeftParenthesis;
      break;
    case ')':
      token.kind = TokenKind::kRightParenthesis;
      break;
    case ',':
      token.kind = TokenKind::kComma;
      break;
    case '.':
      token.kind = TokenKind::kDot;
      break;
    case '^':
      token.kind = TokenKind::kPower;
      break;
    case '*':
      token.kind = TokenKind::kMultiply;
      break;
    case '/':
      token.kind = TokenKind::kDivide;
      break;
    case '\\':
      token.kind = TokenKind::kDivideWhole;
      break;
    case '+':
      token.kind = TokenKind::kPlus;
      break;
    case '-':
      token.kind = TokenKind::kMinus;
      break;
    case '&':
      token.kind = TokenKind::kConcatenate;
      break;
    case '=':
      symbol_or_joined(token, TokenKind::kEqual);
      break;
    case '<':
      symbol_or_joined(token, TokenKind::kLess);
      break;
    case '>':
      symbol_or_joined(token, TokenKind::kGreater);
      break;
    default:
      fail(1032, token.at);
  }
}

void Lexer::read(Token& token) {
  switch (const char byte = source_[offset_]; byte) {
    case '"':
      text(token);
      return;
    case '[':
      bracketed_name(token);
      return;
    case '#':
      date(token);
      return;
    case '\'':
      comment(token);
      return;
    case '\r':
    case '\n':
      newline(token);
      return;
    case '.':
      is_digit(peek(1)) ? number(token) : symbol(token);
      return;
    case '&':
      starts_radix() ? radix_number(token) : symbol(token);
      return;
    default:
      if (is_letter(byte)) {
        word(token);
      } else if (is_digit(byte)) {
        number(token);
      } else {
        symbol(token);
      }
  }
}

void Lexer::next(Token& token) {
  token.kind = TokenKind::kEndOfText;
  token.after_blank = skip_blanks();
  token.first_on_line = at_line_start_;
  token.at = here();
  at_line_start_ = false;
  if (offset_ < source_.size()) read(token);
  after_dot_ = token.kind == TokenKind::kDot;
}

}  // namespace pv::vbscript
