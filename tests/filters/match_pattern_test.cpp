#include "filters/match_pattern.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>

namespace pv {
namespace {

constexpr std::string_view kDelimiters = " \r'\"\n";

struct PatternCase {
  const char* what;
  std::string_view pattern;
  std::string_view text;
  bool any_case;  // matches without case sensitivity
  bool exact;     // matches with it
};

constexpr PatternCase kPatterns[] = {
    {"an empty pattern", "", "free", false, false},
    {"a word of its own", "free", "Get it free now", true, true},
    {"a word before the line end", "free", "FREE\r\n", true, false},
    {"no delimiter after it", "free", "freedom", false, false},
    {"only the first occurrence counts", "free", "freedom is free", false, false},
    {"bytes above 127 have no case", "\xE4", "\xC4", false, false},
    {"two adjacent asterisks make a literal text", "a**b", "xA**By", true, true},
    {"a middle ignores case whatever is set", "*free*", "FREEDOM", true, true},
    {"a prefix does not", "win*cash", "Win big cash now", true, false},
    {"a prefix longer than the text", "window*", "win", false, false},
    {"a middle that is not there may stand where its first letter has the other case", "*now*free*", "Free now", true,
     false},
    {"but not a tail that is there and badly delimited", "*now*free", "Free now freedom", false, false},
};

TEST(MatchPattern, WordsAndSegments) {
  for (const PatternCase& c : kPatterns) {
    EXPECT_EQ(MatchPattern(c.text, c.pattern, kDelimiters, false), c.any_case) << c.what << ", any case";
    EXPECT_EQ(MatchPattern(c.text, c.pattern, kDelimiters, true), c.exact) << c.what << ", exact";
  }
}

// The definition, step by step and byte by byte. Positions are -1 for none.
namespace slow {

char folded(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

bool holds(const std::string& text, std::size_t at, const std::string& part, bool exact) {
  for (std::size_t i = 0; i < part.size(); ++i) {
    if (at + i >= text.size()) return false;
    if (exact ? text[at + i] != part[i] : folded(text[at + i]) != folded(part[i])) return false;
  }
  return true;
}

int search(const std::string& text, std::size_t from, const std::string& part, bool exact) {
  for (std::size_t at = from; at < text.size(); ++at) {
    if (holds(text, at, part, exact)) return static_cast<int>(at);
  }
  return -1;
}

int second_chance(const std::string& text, const std::string& part, bool exact) {
  const bool lower = part[0] >= 'a' && part[0] <= 'z';
  const bool upper = part[0] >= 'A' && part[0] <= 'Z';
  if (!lower && !upper) return -1;
  const int at = search(text, 0, std::string(1, static_cast<char>(lower ? part[0] - 32 : part[0] + 32)), true);
  return at >= 0 && holds(text, static_cast<std::size_t>(at), part, exact) ? at : -1;
}

bool match(const std::string& text, const std::string& pattern, const std::string& delimiters, bool exact) {
  const auto delimits = [&](std::size_t at) { return delimiters.find(text[at]) != std::string::npos; };
  if (pattern.empty()) return false;
  if (pattern.find("**") != std::string::npos) return search(text, 0, pattern, false) >= 0;
  std::size_t star = pattern.find('*');
  if (star == std::string::npos) {
    const int start = search(text, 0, pattern, exact);
    if (start < 0) return false;
    const bool good_start = start == 0 || delimits(static_cast<std::size_t>(start) - 1);
    const std::size_t end = static_cast<std::size_t>(start) + pattern.size();
    return end == text.size() ? good_start : delimits(end) && good_start;
  }
  if (!holds(text, 0, pattern.substr(0, star), exact)) return false;
  int position = static_cast<int>(star);
  std::string rest = pattern.substr(star + 1);
  for (; (star = rest.find('*')) != std::string::npos; rest = rest.substr(star + 1)) {
    const int found = search(text, static_cast<std::size_t>(position), rest.substr(0, star), false);
    position = found >= 0 ? found + 1 : second_chance(text, rest.substr(0, star), exact);
    if (position < 0) return false;
  }
  if (rest.empty()) return true;
  position = search(text, static_cast<std::size_t>(position), rest, exact);
  if (position < 0) position = second_chance(text, rest, exact);
  if (position < 0) return false;
  const std::size_t end = static_cast<std::size_t>(position) + rest.size();
  return end == text.size() || delimits(end);
}

}  // namespace slow

std::string generated(std::mt19937& random, std::string_view alphabet, std::size_t longest) {
  std::string text(random() % (longest + 1), '\0');
  for (char& c : text) c = alphabet[random() % alphabet.size()];
  return text;
}

TEST(MatchPattern, DecidesAsItsDefinitionDoes) {
  std::mt19937 random(20240611);
  int matches = 0;
  for (int n = 0; n < 300000; ++n) {
    const std::string text = generated(random, n % 4 ? "aAb \n" : "aAb*\xE4\xC4", 14);
    const std::string pattern = generated(random, n % 4 ? "aAb*" : "aAb*\xE4", n % 2 ? 3 : 7);
    const std::string delimiters = n % 3 ? " \n" : "";
    const bool exact = n % 5 == 0;
    const bool expected = slow::match(text, pattern, delimiters, exact);
    matches += expected ? 1 : 0;
    ASSERT_EQ(MatchPattern(text, pattern, delimiters, exact), expected)
        << "text [" << text << "] pattern [" << pattern << "] exact " << exact;
  }
  EXPECT_GT(matches, 30000);  // else the generator no longer reaches the rules
}

TEST(MatchPattern, AThousandAsterisksEndOnALongText) {
  std::string pattern;
  for (int i = 0; i < 1000; ++i) pattern += "a*";
  const std::string text(100000, 'a');
  EXPECT_TRUE(MatchPattern(text, pattern, kDelimiters, false));
  EXPECT_TRUE(MatchPattern(text.substr(0, 1000), pattern, kDelimiters, false));
  EXPECT_FALSE(MatchPattern(text.substr(0, 999), pattern, kDelimiters, false));
  EXPECT_FALSE(MatchPattern(text, pattern + "b", kDelimiters, false));
}

}  // namespace
}  // namespace pv
