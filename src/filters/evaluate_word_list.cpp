#include "common/agent_settings.h"
#include "common/output.h"
#include "filters/compiled_filters.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/list_criteria.h"
#include "filters/match_pattern.h"
#include "filters/sender_token.h"

namespace pv {
namespace {

constexpr std::size_t kCapacityWithSender = kWordListValue - 1;  // bytes; a word that would reach it keeps its token

void record_match(const ListEntry& entry, std::string_view word) {
  record_word(entry, tag::kWord, word);
  print_parts({"Message General Criteria met against [", until_nul(word), "] in specified word list.\n"});
}

void test_words(const ListEntry& entry, const ListSubject& subject, SenderToken& sender) {
  const bool case_sensitive = case_sensitive_criteria();
  Words words(entry.value);
  while (const std::optional<std::string_view> written = words.next()) {
    const std::string_view word = sender.put_into(*written, kCapacityWithSender);
    if (MatchPattern(subject.text, word, subject.delimiters, case_sensitive)) record_match(entry, word);
  }
}

// Word by word: what the compiled words are made to agree with.
void walk_words(SlotIndex slot, const ListSubject& subject, const FilterSet& set, MatchResults& results) {
  SenderToken sender(results.message);
  for_each_entry(slot, kWordListValue, set, results, [&](const ListEntry& entry) {
    if (!word_file_answers(entry, subject, tag::kWord, set, results)) test_words(entry, subject, sender);
  });
}

}  // namespace

void EvaluateWordList(SlotIndex slot, std::string_view text, std::string_view delimiters, const FilterSet& set,
                      MatchResults& results) {
  const auto record = [&](const EntryMatches& found, FilterMatch& match) {
    if (record_file_lines(found, slot, tag::kWord, match)) return;
    for (const std::string_view word : found.words) record_match({slot, found.entry, {}, match}, word);
  };
  const ListTexts texts{slot, ListEvaluator::kWordList, {&text, 1}, delimiters};
  if (for_each_match(texts, CriterionWords::Entries::kMatching, set, results, record)) return;

  walk_words(slot, {text, delimiters}, set, results);
}

}  // namespace pv
