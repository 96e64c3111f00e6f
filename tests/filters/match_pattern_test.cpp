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

void expect_matches(const PatternCase& c, std::string_view delimiters = kDelimiters) {
  EXPECT_EQ(MatchPattern(c.text, c.pattern, delimiters, false), c.any_case) << c.what << ", any case";
  EXPECT_EQ(MatchPattern(c.text, c.pattern, delimiters, true), c.exact) << c.what << ", exact";
}

constexpr PatternCase kWords[] = {
    {"an empty pattern", "", "free", false, false},
    {"a word of its own", "free", "Get it free now", true, true},
    {"the line end delimits", "free", "FREE\r\n", true, false},
    {"the start and the end of the text delimit", "free", "free", true, true},
    {"no delimiter after it", "free", "freedom", false, false},
    {"no delimiter before it", "free", "carefree now", false, false},
    {"only the first occurrence counts", "free", "freedom is free", false, false},
    {"the first in the pattern's case counts", "free", "Freedom is free", false, true},
    {"an empty text", "free", "", false, false},
    {"a line end of its own, at the end of the text", "free\n", "it is free\n", true, true},
    {"a line end of its own, that the text lacks", "free\n", "it is free", false, false},
    {"bytes above 127 have no case", "\xE4", "\xC4", false, false},
};

TEST(MatchPattern, WordsNeedDelimitersOnBothSides) {
  for (const PatternCase& c : kWords) expect_matches(c);
}

constexpr PatternCase kWithoutDelimiters[] = {
    {"the whole text", "free", "free", true, true},
    {"a blank after it", "free", "free now", false, false},
    {"a tail before a blank", "*free", "free now", false, false},
    {"a tail at the end", "*free", "it's free", true, true},
};

TEST(MatchPattern, WithoutDelimitersOnlyTheEndsOfTheTextDelimit) {
  for (const PatternCase& c : kWithoutDelimiters) expect_matches(c, "");
}

constexpr PatternCase kLiterals[] = {
    {"where it occurs literally", "a**b", "xA**By", true, true},
    {"a single asterisk beside it is literal too", "*a**", "xa**", false, false},
    {"nothing but asterisks", "**", "win** now", true, true},
};

TEST(MatchPattern, TwoAdjacentAsterisksMakeALiteralText) {
  for (const PatternCase& c : kLiterals) expect_matches(c);
}

constexpr PatternCase kSegments[] = {
    {"a lone asterisk", "*", "anything", true, true},
    {"a lone asterisk, empty text", "*", "", true, true},
    {"a middle within a word", "*free*", "freedom", true, true},
    {"a middle ignores case whatever is set", "*free*", "FREEDOM", true, true},
    {"prefix and tail", "win*cash", "Win big cash now", true, false},
    {"the text does not begin with the prefix", "win*cash", "You win cash", false, false},
    {"a prefix longer than the text", "window*", "win", false, false},
    {"prefix and tail must not overlap", "abc*cd", "abcd", false, false},
    {"a tail needs a delimiter after it", "*free", "get freedom", false, false},
    {"a tail needs none before it", "*free", "carefree now", true, true},
    {"only the tail's first occurrence counts", "*free", "freedom is free", false, false},
    {"middles out of order", "*one*two*", "two one", false, false},
    {"a middle may overlap the one before it", "*aba*bab*", "abab", true, true},
    {"but not begin with it", "*aa*aaa*", "aaa", false, false},
    {"a middle may not begin inside the prefix", "ab*b*", "ab", false, false},
    {"a tail may begin inside the last middle", "*free*ee", "free", true, true},
    {"a segment with a line end", "*free\n", "it is free\n", true, true},
};

TEST(MatchPattern, SegmentsFollowEachOther) {
  for (const PatternCase& c : kSegments) expect_matches(c);
}

constexpr PatternCase kSecondChance[] = {
    {"a middle before the others, first letter in the other case", "*now*free*", "Free now", true, false},
    {"the same in its own case", "*now*free*", "free now", false, false},
    {"an upper-case middle, lower-case text", "*now*FREE*", "free now", true, false},
    {"only the letter's first place counts", "*now*free*", "Fun Free now", false, false},
    {"a middle that begins with no letter", "*now*1F*", "1f now", false, false},
    {"a tail", "*now*free", "Free now", true, false},
    {"a tail without delimiter", "*now*free", "Freedom now", false, false},
    {"not for a tail that is there but badly delimited", "*now*free", "Free now freedom", false, false},
    {"the next search begins at the start of the middle", "*now*free*Free*", "Free now", true, false},
    {"and goes on from there", "*now*free*ee n*now", "Free now", true, false},
};

TEST(MatchPattern, ASegmentHasASecondChanceInTheOppositeCase) {
  for (const PatternCase& c : kSecondChance) expect_matches(c);
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
