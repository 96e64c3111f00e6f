// Numbers as a program text has them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "vbscript/token.h"

namespace pv::vbscript {

struct NumberLiteral {
  bool valid = false;      // false: no double holds it, or its 32 bits do not suffice
  std::size_t length = 0;  // bytes of the literal
  TokenKind kind = TokenKind::kDouble;
  std::int32_t number = 0;  // kInteger, kLong
  double real = 0;          // kDouble
};

// The number that `text` begins with, a digit or a point before a digit: the smallest of Integer and Long that holds
// it, Double beyond that or with a fraction or an exponent.
NumberLiteral read_number(std::string_view text);

// The number that `text` begins with, "&H" or "&O" before a digit: 16 bits are an Integer with its sign (&HFFFF is -1),
// more or an "&" behind it a Long.
NumberLiteral read_radix_number(std::string_view text);

}  // namespace pv::vbscript
