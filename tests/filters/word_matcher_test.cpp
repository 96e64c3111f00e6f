#include "filters/word_matcher.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "filters/match_pattern.h"

namespace pv {
namespace {

constexpr std::string_view kDelimiters = " \r'\"\n";

// The rule, word by word.
std::vector<std::uint32_t> matched_one_by_one(const std::vector<std::string_view>& words, std::string_view text,
                                              bool exact) {
  std::vector<std::uint32_t> matches;
  for (std::uint32_t i = 0; i < words.size(); ++i) {
    if (MatchPattern(text, words[i], kDelimiters, exact)) matches.push_back(i);
  }
  return matches;
}

struct WordKind {
  const char* what;
  std::string_view letters;
  std::size_t longest;   // letters of a word
  unsigned asterisk_in;  // one letter in so many is an asterisk; 0: none
  std::size_t words;
  std::string_view in_front;  // of every word
};

constexpr WordKind kKinds[] = {
    {"few short words", "abc ", 4, 0, 8, ""},
    {"words that have much in common", "ab ", 12, 0, 300, ""},
    {"words whose first parts repeat", "abc", 5, 0, 300, "click here "},
    {"few patterns", "abcdefgh ", 9, 5, 20, ""},
    {"patterns of every length", "abcdefghijklmnopqrstuvwxyz .-", 20, 6, 400, ""},
    {"patterns that have much in common", "ab", 24, 7, 400, ""},
    {"patterns that begin alike", "abcdef", 8, 4, 300, "free*"},
    {"patterns that hold one piece", "abcdef", 8, 4, 300, "*click here*"},
    {"both cases and delimiters", "aAbB'\" \r\n", 8, 9, 200, ""},
    {"any byte", "a\x80\xC3\xE9\xFF\x01[Z@`{", 6, 8, 200, ""},
};

class Words {
 public:
  Words(const WordKind& kind, unsigned seed) : kind_(kind), random_(seed) {
    std::set<std::string> distinct;
    for (std::size_t i = 0; i < kind.words; ++i) distinct.insert(std::string(kind.in_front) + letters(true));
    distinct.erase("");
    words_.assign(distinct.begin(), distinct.end());
    std::shuffle(words_.begin(), words_.end(), random_);
  }
  std::vector<std::string_view> views() const { return {words_.begin(), words_.end()}; }
  // Words, parts of words and letters, with and without delimiters between them.
  std::string text() {
    std::string text;
    for (std::size_t pieces = random_() % 12; pieces > 0; --pieces) {
      std::string piece = random_() % 3 == 0 ? letters(false) : words_[random_() % words_.size()];
      std::erase_if(piece, [&](char c) { return c == '*' && random_() % 8 != 0; });
      if (random_() % 4 == 0) piece.resize(random_() % (piece.size() + 1));
      if (random_() % 4 == 0)
        std::transform(piece.begin(), piece.end(), piece.begin(),
                       [](char c) { return static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c); });
      text += piece;
      if (random_() % 3 != 0) text += kDelimiters[random_() % kDelimiters.size()];
    }
    return text;
  }

 private:
  std::string letters(bool asterisks) {
    std::string text;
    for (std::size_t length = random_() % kind_.longest + 1; length > 0; --length) {
      const bool asterisk = asterisks && kind_.asterisk_in != 0 && random_() % kind_.asterisk_in == 0;
      text += asterisk ? '*' : kind_.letters[random_() % kind_.letters.size()];
    }
    return text;
  }

  const WordKind& kind_;
  std::mt19937 random_;
  std::vector<std::string> words_;
};

constexpr unsigned kSets = 6;
constexpr int kTexts = 60;

TEST(WordMatcher, FindsWhatTheRuleFindsWordByWord) {
  for (const WordKind& kind : kKinds) {
    std::size_t found = 0;
    for (unsigned seed = 0; seed < kSets; ++seed) {
      Words words(kind, seed);
      const WordMatcher matcher(words.views(), kDelimiters);
      MatcherScratch scratch;
      for (int i = 0; i < kTexts; ++i) {
        const std::string text = words.text();
        for (const bool exact : {false, true}) {
          std::vector<std::uint32_t> matches;
          matcher.find(text, exact, scratch, matches);
          std::sort(matches.begin(), matches.end());
          ASSERT_EQ(matches, matched_one_by_one(words.views(), text, exact))
              << kind.what << ", set " << seed << ", text [" << text << "]" << (exact ? ", exact" : "");
          found += matches.size();
        }
      }
    }
    EXPECT_GT(found, 100u) << kind.what;
  }
}

}  // namespace
}  // namespace pv
