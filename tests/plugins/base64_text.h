// Base64 for messages of tests: the EICAR text must not stand in the sources, encoded neither.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace example::test {

// The bytes in base64, in lines of `line_length` characters.
inline std::string base64(std::string_view bytes, std::size_t line_length) {
  constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string digits;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::string_view group = bytes.substr(i, 3);
    std::uint32_t bits = 0;
    for (std::size_t k = 0; k < 3; ++k)
      bits = bits << 8 | (k < group.size() ? static_cast<unsigned char>(group[k]) : 0U);
    for (std::size_t k = 0; k < 4; ++k) digits += k <= group.size() ? kDigits[bits >> (18 - 6 * k) & 63] : '=';
  }
  std::string lines;
  for (std::size_t i = 0; i < digits.size(); i += line_length) lines += digits.substr(i, line_length) + "\r\n";
  return lines;
}

}  // namespace example::test
