// The list criteria of a filter set, compiled when it is loaded: one matcher a criterion, over the words of all filters
// and of the word files they name.
//
// Word files without "Allow Pattern Caching" are part of the matcher too. They are looked at with the first text of
// each message, and again whenever the message had to wait for something (MatchResults::moment): nobody can tell when
// in between an edit was made. When one has changed, the criterion is compiled anew beside the old one, which messages
// in progress go on using until their next look.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "filters/criterion_words.h"
#include "filters/list_evaluators.h"
#include "filters/match_results.h"
#include "filters/word_file_copies.h"
#include "platform/reuse_pool.h"

namespace pv {

class CompiledCriterion;

// What one message needs while its texts are matched. Used by one thread at a time.
struct MatchScratch {
  struct PerCriterion {
    std::shared_ptr<const CriterionWords> words;  // that the message works with; nullptr: none so far
    std::uint32_t moment = 0;                     // of the message when the word files were looked at
    std::vector<std::string> sender_words;        // as the message completes them, for `words`
  };
  std::array<PerCriterion, kListCriterionCount> criteria;
  CriterionScratch buffers;
};

// Hands MatchScratch from message to message, so that their memory is there when a message begins. Any thread.
class ScratchPool {
 public:
  ScratchPool() = default;
  ~ScratchPool() { unused_.clear(); }
  std::unique_ptr<MatchScratch> take();
  void give_back(std::unique_ptr<MatchScratch> scratch) noexcept;

 private:
  platform::ReusePool<MatchScratch> unused_;
};

// Any thread; does not change but for the word files it follows.
class CompiledFilters {
 public:
  // Copies what it needs of the set's criteria; the word files in its cache are borrowed.
  explicit CompiledFilters(const FilterSet& set);
  ~CompiledFilters();
  CompiledFilters(const CompiledFilters&) = delete;
  CompiledFilters& operator=(const CompiledFilters&) = delete;

  // The index in kListCriteria, or -1.
  static int index_of(SlotIndex slot, ListEvaluator evaluator, std::string_view delimiters);

  std::span<const EntryMatches> find(std::size_t index, std::span<const std::string_view> texts,
                                     CriterionWords::Entries which, const FilterSet& set, MatchResults& results) const;

 private:
  std::array<std::unique_ptr<CompiledCriterion>, kListCriterionCount> criteria_;  // nullptr: no filter uses it
  std::shared_ptr<ScratchPool> pool_;
};

// Compiles the set's criteria. Without it the evaluators walk through the words one by one, with the same results.
void compile_filters(FilterSet& set);

// The texts of one call of an evaluator.
struct ListTexts {
  SlotIndex slot = 0;
  ListEvaluator evaluator = ListEvaluator::kWordList;
  std::span<const std::string_view> texts;  // a word matches when it matches one of them
  std::string_view delimiters;
};

// Calls `visit(const EntryMatches&, FilterMatch&)` for the entries with a matching word, or all entries, in order.
// False, and no call, when the set is not compiled for such texts.
template <typename Visit>
bool for_each_match(const ListTexts& texts, CriterionWords::Entries which, const FilterSet& set, MatchResults& results,
                    Visit visit) {
  if (set.compiled == nullptr) return false;
  const int index = CompiledFilters::index_of(texts.slot, texts.evaluator, texts.delimiters);
  if (index < 0) return false;
  for (const EntryMatches& entry :
       set.compiled->find(static_cast<std::size_t>(index), texts.texts, which, set, results)) {
    visit(entry, results.match(entry.filter));
  }
  return true;
}

}  // namespace pv
