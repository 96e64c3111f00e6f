#include "filters/percent_decoding.h"

#include <cstddef>
#include <optional>

namespace pv {
namespace {

std::optional<int> digit_value(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return std::nullopt;
}

// The byte that the two digits at the front of `text` give.
std::optional<char> encoded_byte(std::string_view text) {
  if (text.size() < 2) return std::nullopt;
  const std::optional<int> high = digit_value(text[0]);
  const std::optional<int> low = digit_value(text[1]);
  if (!high || !low) return std::nullopt;
  return static_cast<char>(*high * 16 + *low);
}

}  // namespace

std::string percent_decode(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      decoded.push_back(text[i]);
    } else if (const std::optional<char> byte = encoded_byte(text.substr(i + 1))) {
      decoded.push_back(*byte);
      i += 2;
    }
  }
  return decoded;
}

}  // namespace pv
