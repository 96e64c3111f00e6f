#include "common/text_search.h"

#include <gtest/gtest.h>

#include <random>

namespace pv {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

struct FindCase {
  const char* what;
  std::string_view text;
  std::string_view pattern;
  std::size_t from;
  std::size_t at;
};
constexpr FindCase kFinds[] = {
    {"the pattern in the other case", "Hello", "LL", 0, 2},
    {"an empty pattern at the end", "abc", "", 3, 3},
    {"'[' and '{' differ by the case bit only", "[", "{", 0, kNone},
    {"bytes above 127 are compared as they are", "\xE4", "\xC4", 0, kNone},
};

TEST(TextSearch, FindsWithoutRegardToCase) {
  for (const FindCase& c : kFinds) EXPECT_EQ(find_nocase(c.text, c.pattern, c.from), c.at) << c.what;
}

TEST(TextSearch, FindsAtEveryPlaceOfALongText) {
  for (std::size_t at = 0; at < 1100; ++at) {
    std::string text(1102, 'x');
    text.replace(at, 2, "aB");
    ASSERT_EQ(find_nocase(text, "Ab"), at);
  }
}

std::size_t slow_find(std::string_view text, std::string_view pattern, std::size_t from) {
  for (std::size_t at = from; at + pattern.size() <= text.size(); ++at) {
    if (equals_nocase(text.substr(at, pattern.size()), pattern)) return at;
  }
  return kNone;
}

// Texts longer than the search's windows, over few letters so that false starts abound.
TEST(TextSearch, FindsWhatTheSlowSearchFinds) {
  std::minstd_rand random(1);
  const auto generated = [&random](std::size_t size, std::string_view letters) {
    std::string text(size, ' ');
    for (char& c : text) c = letters[random() % letters.size()];
    return text;
  };
  for (int round = 0; round < 3000; ++round) {
    const std::string text = generated(random() % 1600, round % 2 != 0 ? "aAb" : "aBcDefGhijk1");
    const std::string pattern = generated(1 + random() % 12, round % 2 != 0 ? "AbB" : "AbCdeF1");
    const std::size_t from = random() % (text.size() + 2);
    ASSERT_EQ(find_nocase(text, pattern, from), slow_find(text, pattern, from)) << text << "\n" << pattern;
  }
}

struct ReplaceCase {
  const char* what;
  std::string_view text;
  std::string_view pattern;
  std::size_t capacity;
  bool replaced;
  std::string_view result;
};
constexpr ReplaceCase kReplacements[] = {
    {"the result as long as the capacity", "aXbX", "X", 6, false, "aXbX"},
    {"the result one shorter", "aXbX", "X", 7, true, "aYYbYY"},
    {"no occurrence", "ab", "X", 16, true, "ab"},
    {"no occurrence in a text as long as the capacity", "abc", "X", 3, false, "abc"},
    {"inserted text is not searched", "Y", "Y", 16, true, "YY"},
    {"an empty pattern", "ab", "", 16, false, "ab"},
};

TEST(TextSearch, ReplacesAllOrNothing) {
  for (const ReplaceCase& c : kReplacements) {
    BoundedText<16> bounded;
    ASSERT_TRUE(bounded.assign(c.text));
    std::string text(c.text);
    EXPECT_EQ(replace_all(text, c.pattern, "YY", c.capacity), c.replaced) << c.what;
    EXPECT_EQ(text, c.result) << c.what;
    EXPECT_EQ(replace_all(bounded, c.pattern, "YY", c.capacity), c.replaced) << c.what;
    EXPECT_EQ(bounded.view(), c.result) << c.what;
  }
}

TEST(TextSearch, ReplaceAllNocaseKeepsATextThatWouldNotFit) {
  BoundedText<8> text;
  ASSERT_TRUE(text.assign("aXbx"));
  EXPECT_FALSE(replace_all_nocase(text, "X", "1234"));
  EXPECT_EQ(text.view(), "aXbx");
  EXPECT_TRUE(replace_all_nocase(text, "X", "12"));
  EXPECT_EQ(text.view(), "a12b12");
}

TEST(TextSearch, ReplacesInAGrowingText) {
  constexpr struct {
    const char* what;
    std::string_view pattern;
    std::string_view replacement;
    int largest_number;
    bool stay;
    bool match_case;
    int replaced;
    std::string_view result;
  } kCases[] = {
      {"all, without regard to case", "AA", "b", 0, false, false, 2, "bb"},
      {"with regard to case", "AA", "b", 0, false, true, 1, "aab"},
      {"a negative number is no limit", "a", "", -1, false, false, 4, ""},
      {"with stay it is searched again", "aa", "a", 0, true, false, 3, "a"},
      {"the limit ends a text that keeps its pattern", "a", "ax", 3, true, true, 3, "axxxaAA"},
      {"an empty pattern", "", "x", 0, false, false, 0, "aaAA"},
  };
  for (const auto& c : kCases) {
    std::string text = "aaAA";
    EXPECT_EQ(replace_in_string(text, c.pattern, c.replacement, c.largest_number, c.stay, c.match_case), c.replaced);
    EXPECT_EQ(text, c.result) << c.what;
  }
}

struct ExtractCase {
  const char* what;
  std::string_view text;
  std::string_view start;
  std::string_view end;
  std::optional<std::size_t> after;
  std::string_view extract;
};
constexpr ExtractCase kExtracts[] = {
    {"between the markers", "a<b>c", "<", ">", 4, "b"},
    {"an end marker before the start does not count", ">a<b>", "<", ">", 5, "b"},
    {"a marker in another case", "startxEND", "START", "END", std::nullopt, "preset"},
    {"as long as the capacity allows", "<1234567>", "<", ">", 9, "1234567"},
    {"one longer", "<12345678>", "<", ">", std::nullopt, "preset"},
};

TEST(TextSearch, ExtractsBetweenMarkers) {
  for (const ExtractCase& c : kExtracts) {
    BoundedText<8> out;
    ASSERT_TRUE(out.assign("preset"));
    EXPECT_EQ(extract_between(c.text, c.start, c.end, out), c.after) << c.what;
    EXPECT_EQ(out.view(), c.extract) << c.what;
  }
}

}  // namespace
}  // namespace pv
