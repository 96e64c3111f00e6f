// Classes of source bytes, without regard to any locale. Bytes above 127 are letters of no kind here.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace pv::vbscript {

constexpr bool is_digit(char byte) {
  return byte >= '0' && byte <= '9';
}
constexpr char lower(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}
constexpr bool is_letter(char byte) {
  return lower(byte) >= 'a' && lower(byte) <= 'z';
}
// Letters, digits and "_", from a table: names are most of a program's bytes.
inline constexpr std::array<bool, 256> kNameParts = [] {
  std::array<bool, 256> table{};
  for (unsigned byte = 0; byte < table.size(); ++byte) {
    const char as_char = static_cast<char>(static_cast<unsigned char>(byte));
    table[byte] = is_letter(as_char) || is_digit(as_char) || as_char == '_';
  }
  return table;
}();
constexpr bool is_name_part(char byte) {
  return kNameParts[static_cast<unsigned char>(byte)];
}
constexpr bool is_blank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\v' || byte == '\f';
}
constexpr bool is_line_end(char byte) {
  return byte == '\r' || byte == '\n';
}
// The value of a hexadecimal digit; 16 for any other byte.
constexpr unsigned digit_value(char byte) {
  if (is_digit(byte)) return static_cast<unsigned>(byte - '0');
  const char letter = lower(byte);
  return letter >= 'a' && letter <= 'f' ? static_cast<unsigned>(letter - 'a') + 10 : 16;
}
constexpr bool same_word(std::string_view left, std::string_view right) {
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (lower(left[i]) != lower(right[i])) return false;
  }
  return true;
}

}  // namespace pv::vbscript
