// The pattern rule against its literal twin. The input is text, pattern and delimiters, separated by NULs.
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "filters/match_pattern.h"
#include "fuzz_target.h"

namespace pv::fuzz {
namespace {

constexpr std::size_t kNone = std::string::npos;

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}
std::string lower(std::string text) {
  for (char& c : text) c = lower(c);
  return text;
}
char opposite(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : static_cast<char>(c - 32);
}
bool is_letter(char c) {
  return lower(c) >= 'a' && lower(c) <= 'z';
}

// The rule as one would explain it, on copies and one character at a time.
struct Twin {
  std::string text;
  std::string delimiters;
  bool exact;

  std::string by_flag(std::string part) const { return exact ? part : lower(std::move(part)); }
  bool delimiter(std::size_t i) const { return delimiters.find(text[i]) != kNone; }
  bool ends_at(std::size_t i) const { return i == text.size() || delimiter(i); }

  bool word(const std::string& word) const {
    const std::size_t at = by_flag(text).find(by_flag(word));
    return at != kNone && (at == 0 || delimiter(at - 1)) && ends_at(at + word.size());
  }

  std::size_t second_chance(const std::string& segment) const {
    if (!is_letter(segment[0])) return kNone;
    const std::size_t at = text.find(opposite(segment[0]));
    if (at == kNone || by_flag(text.substr(at, segment.size())) != by_flag(segment)) return kNone;
    return at;
  }

  bool segments(const std::vector<std::string>& parts) const {
    const std::string& prefix = parts.front();
    const std::string& tail = parts.back();
    if (by_flag(text.substr(0, prefix.size())) != by_flag(prefix)) return false;
    std::size_t from = prefix.size();
    for (std::size_t i = 1; i + 1 < parts.size(); ++i) {
      const std::size_t at = lower(text).find(lower(parts[i]), from);
      from = at != kNone ? at + 1 : second_chance(parts[i]);
      if (from == kNone) return false;
    }
    if (tail.empty()) return true;
    std::size_t at = by_flag(text).find(by_flag(tail), from);
    if (at == kNone) at = second_chance(tail);
    return at != kNone && ends_at(at + tail.size());
  }

  bool matches(const std::string& pattern) const {
    if (pattern.empty()) return false;
    if (pattern.find("**") != kNone) return lower(text).find(lower(pattern)) != kNone;
    std::vector<std::string> parts(1);
    for (const char c : pattern) {
      if (c == '*') {
        parts.emplace_back();
      } else {
        parts.back() += c;
      }
    }
    return parts.size() == 1 ? word(pattern) : segments(parts);
  }
};

void run(std::string_view input) {
  const std::string_view text = take_until('\0', input);
  const std::string_view pattern = take_until('\0', input);
  for (const bool exact : {false, true}) {
    const Twin twin{std::string(text), std::string(input), exact};
    require(MatchPattern(text, pattern, input, exact) == twin.matches(std::string(pattern)),
            exact ? "the twin agrees, exact" : "the twin agrees, any case");
  }
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
