#include "common/agent_settings.h"
#include "filters/compiled_filters.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/list_criteria.h"
#include "filters/match_pattern.h"

namespace pv {
namespace {

void test_words(const ListEntry& entry, const ListSubject& subject) {
  const bool case_sensitive = case_sensitive_criteria();
  Words words(entry.value);
  while (const std::optional<std::string_view> word = words.next()) {
    if (MatchPattern(subject.text, *word, subject.delimiters, case_sensitive))
      record_word(entry, tag::kEnvelope, *word);
  }
}

}  // namespace

void EvaluateEnvelopeValue(SlotIndex slot, std::string_view delimiters, std::string_view text, const FilterSet& set,
                           MatchResults& results) {
  const ListSubject subject{text, delimiters};
  const auto record = [&](const EntryMatches& found, FilterMatch& match) {
    if (record_file_lines(found, slot, tag::kEnvelope, match)) return;
    for (const std::string_view word : found.words) record_word({slot, found.entry, {}, match}, tag::kEnvelope, word);
  };
  const ListTexts texts{slot, ListEvaluator::kEnvelopeValue, {&text, 1}, delimiters};
  if (for_each_match(texts, CriterionWords::Entries::kMatching, set, results, record)) return;

  for_each_entry(slot, kAddressValue, set, results, [&](const ListEntry& entry) {
    if (!word_file_answers(entry, subject, tag::kEnvelope, set, results)) test_words(entry, subject);
  });
}

}  // namespace pv
