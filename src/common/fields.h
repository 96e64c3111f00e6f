// Fields of a delimited line. Numbered from 1; two delimiters side by side enclose an empty field.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "common/bounded_text.h"

namespace pv {

// Field `number` of `line`: 1-based, 0 and below act as 1, past the last one takes the last one. `delimiter` is found
// without regard to ASCII case; one right after `escape` (inside the same field) does not count ('\0': no escape), and
// the escape stays in the field. nullopt when there is no delimiter and `number` is above 1. The view is part of
// `line`.
std::optional<std::string_view> find_field(std::string_view line, std::string_view delimiter, int number,
                                           char escape = '\0');

// The same, copied. False when the field does not fit: `out` is emptied, because a cut path would name another file.
// False when there is no such field (no delimiter, `number` above 1): `out` keeps what it held, so that a caller can
// preset a default.
template <std::size_t N>
bool split_field(std::string_view line, std::string_view delimiter, int number, BoundedText<N>& out,
                 char escape = '\0') {
  const std::optional<std::string_view> field = find_field(line, delimiter, number, escape);
  if (!field) return false;
  if (out.assign(*field)) return true;
  out.clear();
  return false;
}

// The number of fields, 0 for an empty line, at most kMostFields. Delimiters are found with regard to case, one after
// the start of the other, from the line's second character on: a delimiter at the very start is not counted.
int count_fields(std::string_view line, std::string_view delimiter);
inline constexpr int kMostFields = 1000;

// The decimal number a text begins with: leading white space is skipped, then an optional sign and digits up to the
// first other character. 0 without digits. Numbers beyond 32 bits become the nearest that fits.
int leading_number(std::string_view text);

}  // namespace pv
