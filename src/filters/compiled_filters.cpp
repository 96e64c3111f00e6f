#include "filters/compiled_filters.h"

#include <algorithm>
#include <utility>

#include "common/agent_settings.h"
#include "filters/list_criteria.h"
#include "filters/sender_token.h"

namespace pv {

// One list criterion of all filters.
class CompiledCriterion {
 public:
  CompiledCriterion(const ListCriterion& criterion, std::vector<ListEntryValue> entries, const FilterSet& set)
      : criterion_(criterion), entries_(std::move(entries)) {
    const auto names_file = [&](const ListEntryValue& entry) {
      WordFilePath path;
      return rules_of(criterion.evaluator).file_tag != nullptr && ResolveWordFile(set, {}, entry.value, path);
    };
    names_files_ = std::any_of(entries_.begin(), entries_.end(), names_file);
    words_ = compiled(set, current_directories().configuration);
  }

  const CriterionWords& words_for(const FilterSet& set, const MatchResults& results,
                                  MatchScratch::PerCriterion& scratch) {
    if (!scratch.words || (names_files_ && scratch.moment != results.moment)) {
      scratch.moment = results.moment;
      use(current(set, configuration_of(results)), results, scratch);
    }
    return *scratch.words;
  }

 private:
  static std::string_view configuration_of(const MatchResults& results) {
    return results.message ? results.message->directories.configuration.view() : std::string_view();
  }

  std::shared_ptr<const CriterionWords> compiled(const FilterSet& set, std::string_view configuration) {
    return std::make_shared<const CriterionWords>(criterion_, entries_, set, configuration,
                                                  settings().allow_pattern_caching != 0, copies_);
  }

  // The newest words; nullptr when they are not those of the files as they are.
  std::shared_ptr<const CriterionWords> current_if_compiled(std::string_view configuration) {
    std::shared_ptr<const CriterionWords> newest;
    {
      const std::lock_guard lock(words_mutex_);
      newest = words_;
    }
    const bool cached = settings().allow_pattern_caching != 0;
    const bool current = newest->made_for(configuration, cached) && newest->files_are_current(copies_);
    return current ? newest : nullptr;
  }

  // Threads that find a file changed wait for the first of them to compile it.
  std::shared_ptr<const CriterionWords> current(const FilterSet& set, std::string_view configuration) {
    if (!names_files_) return words_;
    if (auto words = current_if_compiled(configuration)) return words;
    const std::lock_guard compiling(compiling_mutex_);
    if (auto words = current_if_compiled(configuration)) return words;
    auto words = compiled(set, configuration);
    const std::lock_guard lock(words_mutex_);
    words_ = words;
    return words;
  }

  void use(std::shared_ptr<const CriterionWords> words, const MatchResults& results,
           MatchScratch::PerCriterion& scratch) const {
    if (scratch.words == words) return;
    scratch.words = std::move(words);
    SenderToken sender(results.message);
    const std::size_t capacity = rules_of(criterion_.evaluator).sender_capacity;
    const std::vector<std::string_view>& written = scratch.words->written_sender_words();
    scratch.sender_words.resize(written.size());
    for (std::size_t i = 0; i < written.size(); ++i) {
      scratch.sender_words[i] = sender.put_into(written[i], capacity);
    }
  }

  const ListCriterion& criterion_;
  const std::vector<ListEntryValue> entries_;
  bool names_files_;
  WordFileCopies copies_;
  std::mutex compiling_mutex_;
  std::mutex words_mutex_;
  std::shared_ptr<const CriterionWords> words_;  // guarded by words_mutex_; without word files it never changes
};

namespace {

std::vector<ListEntryValue> entries_of_all_filters(const ListCriterion& criterion, const FilterSet& set) {
  const std::size_t capacity = rules_of(criterion.evaluator).value_capacity;
  std::vector<ListEntryValue> entries;
  for (FilterIndex i = 1; i <= set.filter_count; ++i) {
    const CriterionSlot& slot = set.filter(i).slots[static_cast<std::size_t>(criterion.slot)];
    if (slot.status != 1) continue;
    for (int entry = 0; entry < entries_of(slot); ++entry) {
      entries.push_back({i, entry, std::string(entry_value(slot, entry, capacity))});
    }
  }
  return entries;
}

}  // namespace

std::unique_ptr<MatchScratch> ScratchPool::take() {
  std::unique_ptr<MatchScratch> scratch = unused_.take();
  return scratch != nullptr ? std::move(scratch) : std::make_unique<MatchScratch>();
}

void ScratchPool::give_back(std::unique_ptr<MatchScratch> scratch) noexcept {
  for (MatchScratch::PerCriterion& criterion : scratch->criteria) criterion.words.reset();
  unused_.give_back(std::move(scratch));
}

CompiledFilters::CompiledFilters(const FilterSet& set) : pool_(std::make_shared<ScratchPool>()) {
  for (std::size_t i = 0; i < kListCriterionCount; ++i) {
    std::vector<ListEntryValue> entries = entries_of_all_filters(kListCriteria[i], set);
    if (!entries.empty()) {
      criteria_[i] = std::make_unique<CompiledCriterion>(kListCriteria[i], std::move(entries), set);
    }
  }
}

CompiledFilters::~CompiledFilters() = default;

int CompiledFilters::index_of(SlotIndex slot, ListEvaluator evaluator, std::string_view delimiters) {
  std::size_t row = kFirstListCriterion[static_cast<std::size_t>(slot)];
  for (; row < kListCriterionCount && kListCriteria[row].slot == slot; ++row) {
    const ListCriterion& criterion = kListCriteria[row];
    // They are nearly always the same constants.
    const bool same_delimiters = criterion.delimiters.data() == delimiters.data()
                                     ? criterion.delimiters.size() == delimiters.size()
                                     : criterion.delimiters == delimiters;
    if (criterion.evaluator == evaluator && same_delimiters) return static_cast<int>(row);
  }
  return -1;
}

std::span<const EntryMatches> CompiledFilters::find(std::size_t index, std::span<const std::string_view> texts,
                                                    CriterionWords::Entries which, const FilterSet& set,
                                                    MatchResults& results) const {
  CompiledCriterion* const criterion = criteria_[index].get();
  if (criterion == nullptr) return {};
  if (!results.scratch.holds_one_of(pool_)) results.scratch = ScratchHold(pool_);
  MatchScratch& scratch = *results.scratch;
  const CriterionWords& words = criterion->words_for(set, results, scratch.criteria[index]);
  return words.find(texts, case_sensitive_criteria(), which, scratch.criteria[index].sender_words, scratch.buffers);
}

void compile_filters(FilterSet& set) {
  set.compiled = std::make_shared<const CompiledFilters>(set);
}

}  // namespace pv
