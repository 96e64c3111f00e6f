// Which of many words match a text by the rule of MatchPattern, found for all of them at once. The time for a text
// depends on its length and on what is found in it, not on the number of words.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "filters/asterisk_patterns.h"
#include "filters/folded_text.h"
#include "filters/sightings.h"
#include "filters/token_automaton.h"

namespace pv {

// What a matcher needs to look at a text; keeps its memory for the next one. Used by one thread at a time.
struct MatcherScratch {
  FoldedText text;
  Sightings seen;
};

// Immutable; any thread.
class WordMatcher {
 public:
  // The words are distinct, not empty, and outlive the matcher. `delimiters` hold no letters.
  WordMatcher(std::vector<std::string_view> words, std::string_view delimiters);
  WordMatcher(const WordMatcher&) = delete;
  WordMatcher& operator=(const WordMatcher&) = delete;

  // Appends the numbers (positions among the words) of those that match, each once, in no particular order.
  void find(std::string_view text, bool case_sensitive, MatcherScratch& scratch,
            std::vector<std::uint32_t>& matches) const;

  std::size_t memory() const;

 private:
  bool verified(std::string_view text, const Sighting& plain, bool case_sensitive, const FoldedText& folded) const;

  std::vector<std::string_view> words_;
  std::string delimiters_;
  DelimiterSet delimiter_set_;
  std::optional<TokenAutomaton> automaton_;
  std::optional<AsteriskPatterns> asterisks_;
};

}  // namespace pv
