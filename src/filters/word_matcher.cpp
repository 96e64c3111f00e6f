#include "filters/word_matcher.h"

#include <utility>

#include "filters/folded_search.h"
#include "filters/match_pattern.h"

namespace pv {

WordMatcher::WordMatcher(std::vector<std::string_view> words, std::string_view delimiters)
    : words_(std::move(words)), delimiters_(delimiters), delimiter_set_(delimiters) {
  std::vector<std::string_view> plain, asterisks;
  std::vector<std::uint32_t> plain_numbers, asterisk_numbers;
  for (std::uint32_t i = 0; i < words_.size(); ++i) {
    const bool has_asterisk = words_[i].find('*') != std::string_view::npos;
    (has_asterisk ? asterisks : plain).push_back(words_[i]);
    (has_asterisk ? asterisk_numbers : plain_numbers).push_back(i);
  }
  if (!plain.empty()) automaton_.emplace(plain, plain_numbers, delimiters_, Tokens::kBetweenDelimiters);
  if (!asterisks.empty()) asterisks_.emplace(asterisks, asterisk_numbers);
}

// The word stands there between delimiters. It matches when that is its first occurrence: an earlier one, which must be
// badly delimited, decides in its place. With regard to case the first occurrence may be another one altogether.
bool WordMatcher::verified(std::string_view text, const Sighting& plain, bool case_sensitive,
                           const FoldedText& folded) const {
  if (case_sensitive) return MatchPattern(text, words_[plain.number], delimiters_, true);
  if (plain.start == 0) return true;
  const std::string_view word = folded.view().substr(plain.start, plain.end - plain.start);
  return !occurs_in(folded, plain.end - 1, word);
}

void WordMatcher::find(std::string_view text, bool case_sensitive, MatcherScratch& scratch,
                       std::vector<std::uint32_t>& matches) const {
  scratch.text.assign(text, delimiter_set_);
  if (automaton_) {
    scratch.seen.start(words_.size());
    automaton_->find(scratch.text, scratch.seen);
    for (const Sighting& plain : scratch.seen.seen()) {
      if (verified(text, plain, case_sensitive, scratch.text)) matches.push_back(plain.number);
    }
  }
  if (!asterisks_) return;
  asterisks_->find(scratch.text, scratch.seen, [&](std::uint32_t number) {
    if (MatchPattern(text, words_[number], delimiters_, case_sensitive)) matches.push_back(number);
  });
}

std::size_t WordMatcher::memory() const {
  return words_.capacity() * sizeof(std::string_view) + (automaton_ ? automaton_->memory() : 0) +
         (asterisks_ ? asterisks_->memory() : 0);
}

}  // namespace pv
