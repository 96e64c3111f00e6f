// Finding text without regard to case, and replacing it. Case means ASCII letters; other bytes are compared as they
// are.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "common/bounded_text.h"

namespace pv {

constexpr char ascii_upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr bool is_ascii_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool equals_nocase(std::string_view a, std::string_view b);
bool starts_with_nocase(std::string_view text, std::string_view prefix);

// The position of the first occurrence at or after `from`, or npos. An empty pattern is found at `from`.
std::size_t find_nocase(std::string_view text, std::string_view pattern, std::size_t from = 0);
bool contains_nocase(std::string_view text, std::string_view pattern);

// Replaces every occurrence of `pattern` (with regard to case); inserted text is not searched again. False, and the
// text as it was, when the result has `capacity` bytes or more, or the pattern is empty.
[[nodiscard]] bool replace_all(std::string& text, std::string_view pattern, std::string_view replacement,
                               std::size_t capacity);

template <std::size_t N>
[[nodiscard]] bool replace_all(BoundedText<N>& text, std::string_view pattern, std::string_view replacement,
                               std::size_t capacity = N) {
  if (text.view().find(pattern) == std::string_view::npos) return !pattern.empty() && text.size() < capacity;
  std::string result(text.view());
  return replace_all(result, pattern, replacement, capacity < N ? capacity : N) && text.assign(result);
}

// Replaces every occurrence found without regard to case. True when at least one was replaced. A result longer than the
// text's capacity leaves the text as it was.
template <std::size_t N>
bool replace_all_nocase(BoundedText<N>& text, std::string_view pattern, std::string_view replacement);

// Replaces occurrences in a growing text, at most `largest_number` of them (0 or less: all). The search starts at the
// front and goes on after the inserted text, or with `stay` at its first character. Returns how many were replaced;
// nothing is replaced for an empty pattern. With `stay`, a replacement that holds its own pattern ends only through
// `largest_number`.
int replace_in_string(std::string& text, std::string_view pattern, std::string_view replacement, int largest_number,
                      bool stay, bool match_case);

// What stands between the first `start` and the next `end` after it, with regard to case. An empty `start` begins at
// the front. `after` is the position just behind the end marker, from which a caller can extract again.
struct Extract {
  std::string_view text;  // part of the text searched
  std::size_t after = 0;
};
std::optional<Extract> extract_between(std::string_view text, std::string_view start, std::string_view end);

// The same into a bounded text: nullopt also when the extract does not fit; then, and when nothing was found, `out`
// keeps what it held.
template <std::size_t N>
std::optional<std::size_t> extract_between(std::string_view text, std::string_view start, std::string_view end,
                                           BoundedText<N>& out) {
  const std::optional<Extract> found = extract_between(text, start, end);
  if (!found || !out.assign(found->text)) return std::nullopt;
  return found->after;
}

// The work of replace_all_nocase: the result, or nullopt when the pattern does not occur or is empty.
std::optional<std::string> replaced_nocase(std::string_view text, std::string_view pattern,
                                           std::string_view replacement);

template <std::size_t N>
bool replace_all_nocase(BoundedText<N>& text, std::string_view pattern, std::string_view replacement) {
  const std::optional<std::string> result = replaced_nocase(text, pattern, replacement);
  return result && text.assign(*result);
}

}  // namespace pv
