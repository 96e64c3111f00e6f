#include "vbscript/code_page.h"

#include <algorithm>
#include <cstring>

namespace pv::vbscript {
namespace {

// The bytes 0x80 to 0x9F; all others are their own Unicode numbers. The five that the code page leaves open too.
constexpr std::array<std::uint16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr bool is_upper(int c) {
  if (c >= 'A' && c <= 'Z') return true;
  return c >= 0xC0 && c <= 0xDE && c != 0xD7;
}

constexpr int lower_of(int c) {
  if (is_upper(c)) return c + 0x20;
  if (c == 0x8A || c == 0x8C || c == 0x8E) return c + 0x10;
  return c == 0x9F ? 0xFF : c;
}

constexpr std::array<char, 256> kLower = [] {
  std::array<char, 256> table{};
  for (int c = 0; c < 256; ++c) table[static_cast<std::size_t>(c)] = static_cast<char>(lower_of(c));
  return table;
}();

constexpr std::array<char, 256> kUpper = [] {
  std::array<char, 256> table{};
  for (int c = 0; c < 256; ++c) table[static_cast<std::size_t>(c)] = static_cast<char>(c);
  for (int c = 0; c < 256; ++c) {
    if (lower_of(c) != c) table[static_cast<std::size_t>(lower_of(c))] = static_cast<char>(c);
  }
  return table;
}();

std::size_t index(char c) {
  return static_cast<unsigned char>(c);
}

std::string mapped(std::string_view text, const std::array<char, 256>& table) {
  std::string result(text);
  for (char& c : result) c = table[index(c)];
  return result;
}

int compare_ignoring_case(std::string_view a, std::string_view b) {
  const std::size_t common = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = static_cast<int>(index(lower_case(a[i]))) - static_cast<int>(index(lower_case(b[i])));
    if (difference != 0) return difference;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

}  // namespace

char lower_case(char c) {
  return kLower[index(c)];
}

char upper_case(char c) {
  return kUpper[index(c)];
}

std::string lower_case(std::string_view text) {
  return mapped(text, kLower);
}

std::string upper_case(std::string_view text) {
  return mapped(text, kUpper);
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
  return a.size() == b.size() && compare_ignoring_case(a, b) == 0;
}

int compare_texts(std::string_view a, std::string_view b, bool ignore_case) {
  return ignore_case ? compare_ignoring_case(a, b) : a.compare(b);
}

std::uint16_t unicode_of(char c) {
  const std::size_t byte = index(c);
  return byte >= 0x80 && byte <= 0x9F ? kUpperControls[byte - 0x80] : static_cast<std::uint16_t>(byte);
}

std::optional<char> byte_of(std::uint32_t unicode) {
  if (unicode < 0x80 || (unicode >= 0xA0 && unicode <= 0xFF)) return static_cast<char>(unicode);
  const auto* found = std::find(kUpperControls.begin(), kUpperControls.end(), unicode);
  if (found == kUpperControls.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - kUpperControls.begin()));
}

}  // namespace pv::vbscript
