// Program text to tokens.
#pragma once

#include <cstddef>
#include <string_view>

#include "vbscript/arena.h"
#include "vbscript/token.h"

namespace pv::vbscript {

// Reads one token after the other; comments and continued lines are passed over. Names and most texts are views of the
// source; texts with doubled quotes lie in the arena. Throws CompileError at what is no token.
class Lexer {
 public:
  Lexer(std::string_view source, Arena& arena) : source_(source), arena_(arena) {}

  // Puts the next token into `token`; at the end of the text kEndOfText for ever.
  void next(Token& token);

 private:
  char peek(std::size_t ahead = 0) const;
  Position here() const { return at(offset_); }
  Position at(std::size_t offset) const;

  bool skip_blanks();
  bool skip_continuation();
  void skip_to_line_end();
  void end_line();
  void read(Token& token);
  void word(Token& token);
  void bracketed_name(Token& token);
  void text(Token& token);
  void date(Token& token);
  void number(Token& token);
  bool starts_radix() const;
  void radix_number(Token& token);
  void symbol(Token& token);
  void symbol_or_joined(Token& token, TokenKind alone);
  void newline(Token& token);
  void comment(Token& token);
  bool skip_symbol(char wanted);

  std::string_view source_;
  Arena& arena_;
  std::size_t offset_ = 0;
  std::size_t line_start_ = 0;
  std::uint32_t line_ = 1;
  bool at_line_start_ = true;
  bool after_dot_ = false;  // what follows is a member's name, whatever the word
};

}  // namespace pv::vbscript
