// The rule for many words with Hyperscan in the place of our own search: it finds where a word, or the longest piece of
// a pattern, occurs; what it finds is then examined as the rule says. One call of it a line.
#pragma once

#include <hs/hs.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace pv::bench {

class HyperscanMatcher {
 public:
  HyperscanMatcher(const std::vector<std::string_view>& words, std::string_view delimiters);
  ~HyperscanMatcher();
  HyperscanMatcher(const HyperscanMatcher&) = delete;
  HyperscanMatcher& operator=(const HyperscanMatcher&) = delete;

  void find(std::string_view text, std::vector<std::uint32_t>& matches);

 private:
  static int on_occurrence(unsigned number, unsigned long long from, unsigned long long to, unsigned flags, void* self);
  void examine(unsigned number, std::size_t end);
  bool is_delimiter(std::size_t place) const { return delimits_[static_cast<unsigned char>(text_[place])]; }

  std::vector<std::string_view> words_;
  std::string delimiters_;
  bool delimits_[256] = {};
  std::vector<bool> has_asterisk_;
  std::vector<std::uint32_t> seen_in_;  // by word: the text in which it was seen last
  hs_database_t* database_ = nullptr;
  hs_scratch_t* scratch_ = nullptr;
  // The text at hand.
  std::uint32_t text_number_ = 0;
  std::string_view text_;
  std::vector<std::uint32_t>* matches_ = nullptr;
};

}  // namespace pv::bench
