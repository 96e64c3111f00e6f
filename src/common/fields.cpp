#include "common/fields.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "common/text_search.h"

namespace pv {
namespace {

// The first delimiter of the field that begins at `field_start`. One right after the escape character does not count;
// the delimiter before the field cannot be such an escape.
std::size_t find_field_end(std::string_view line, std::string_view delimiter, std::size_t field_start, char escape) {
  std::size_t at = find_nocase(line, delimiter, field_start);
  if (escape == '\0') return at;
  while (at != std::string_view::npos && at > field_start && line[at - 1] == escape) {
    at = find_nocase(line, delimiter, at + delimiter.size());
  }
  return at;
}

constexpr bool is_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

std::optional<std::string_view> find_field(std::string_view line, std::string_view delimiter, int number, char escape) {
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t start = 0;
  std::size_t end = delimiter.empty() ? kNone : find_field_end(line, delimiter, 0, escape);
  if (end == kNone) return number > 1 ? std::nullopt : std::optional(line);
  for (int current = 1; current < number && end != kNone; ++current) {
    start = end + delimiter.size();
    end = find_field_end(line, delimiter, start, escape);
  }
  return line.substr(start, end == kNone ? kNone : end - start);
}

int count_fields(std::string_view line, std::string_view delimiter) {
  if (line.empty()) return 0;
  int count = 1;
  if (delimiter.empty()) return count;
  for (std::size_t at = line.find(delimiter, 1); at != std::string_view::npos && count < kMostFields;
       at = line.find(delimiter, at + 1)) {
    ++count;
  }
  return count;
}

int leading_number(std::string_view text) {
  std::size_t i = 0;
  while (i < text.size() && is_space(text[i])) ++i;
  const bool negative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  constexpr std::int64_t kBeyond = std::int64_t{std::numeric_limits<int>::max()} + 1;
  std::int64_t number = 0;
  for (; i < text.size() && is_digit(text[i]); ++i) {
    number = std::min(number * 10 + (text[i] - '0'), kBeyond);
  }
  if (negative) return static_cast<int>(-number);
  return static_cast<int>(std::min(number, kBeyond - 1));
}

}  // namespace pv
