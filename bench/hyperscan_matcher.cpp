#include "hyperscan_matcher.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "filters/match_pattern.h"

namespace pv::bench {
namespace {

std::string_view longest_piece(std::string_view word) {
  if (word.find("**") != std::string_view::npos) return word;
  std::string_view longest;
  while (!word.empty()) {
    const std::string_view piece = word.substr(0, word.find('*'));
    if (piece.size() > longest.size()) longest = piece;
    word.remove_prefix(std::min(piece.size() + 1, word.size()));
  }
  return longest;
}

}  // namespace

HyperscanMatcher::HyperscanMatcher(const std::vector<std::string_view>& words, std::string_view delimiters)
    : words_(words), delimiters_(delimiters), seen_in_(words.size()) {
  for (const char c : delimiters) delimits_[static_cast<unsigned char>(c)] = true;
  std::vector<std::string> pieces;
  for (const std::string_view word : words_) {
    has_asterisk_.push_back(word.find('*') != std::string_view::npos);
    pieces.emplace_back(longest_piece(word));
  }
  std::vector<const char*> texts;
  std::vector<unsigned> flags, numbers;
  std::vector<std::size_t> lengths;
  for (const std::string& piece : pieces) {
    texts.push_back(piece.c_str());
    flags.push_back(HS_FLAG_CASELESS);
    numbers.push_back(static_cast<unsigned>(numbers.size()));
    lengths.push_back(piece.size());
  }
  hs_compile_error_t* error = nullptr;
  const hs_error_t compiled =
      hs_compile_lit_multi(texts.data(), flags.data(), numbers.data(), lengths.data(),
                           static_cast<unsigned>(texts.size()), HS_MODE_BLOCK, nullptr, &database_, &error);
  if (compiled == HS_SUCCESS && hs_alloc_scratch(database_, &scratch_) == HS_SUCCESS) return;
  std::fprintf(stderr, "Hyperscan: %s\n", error != nullptr ? error->message : "no memory");
  std::abort();
}

HyperscanMatcher::~HyperscanMatcher() {
  hs_free_scratch(scratch_);
  hs_free_database(database_);
}

int HyperscanMatcher::on_occurrence(unsigned number, unsigned long long, unsigned long long to, unsigned, void* self) {
  static_cast<HyperscanMatcher*>(self)->examine(number, static_cast<std::size_t>(to));
  return 0;
}

// Only the first occurrence of a word counts, so each is examined once a text.
void HyperscanMatcher::examine(unsigned number, std::size_t end) {
  if (seen_in_[number] == text_number_) return;
  seen_in_[number] = text_number_;
  const std::size_t start = end - words_[number].size();
  const bool matches = has_asterisk_[number]
                           ? MatchPattern(text_, words_[number], delimiters_, false)
                           : (start == 0 || is_delimiter(start - 1)) && (end == text_.size() || is_delimiter(end));
  if (matches) matches_->push_back(number);
}

void HyperscanMatcher::find(std::string_view text, std::vector<std::uint32_t>& matches) {
  ++text_number_;
  text_ = text;
  matches_ = &matches;
  hs_scan(database_, text.data(), static_cast<unsigned>(text.size()), 0, scratch_, on_occurrence, this);
}

}  // namespace pv::bench
