#include "common/agent_settings.h"
#include "common/output.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/list_criteria.h"
#include "filters/match_pattern.h"
#include "filters/sender_token.h"

namespace pv {
namespace {

constexpr std::size_t kCapacityWithSender = kWordListValue - 1;  // bytes; a word that would reach it keeps its token

void test_words(const ListEntry& entry, const ListSubject& subject, SenderToken& sender) {
  const bool case_sensitive = case_sensitive_criteria();
  Words words(entry.value);
  while (const std::optional<std::string_view> written = words.next()) {
    const std::string_view word = sender.put_into(*written, kCapacityWithSender);
    if (!MatchPattern(subject.text, word, subject.delimiters, case_sensitive)) continue;
    record_word(entry, tag::kWord, word);
    print("Message General Criteria met against [%.*s] in specified word list.\n", static_cast<int>(word.size()),
          word.data());
  }
}

}  // namespace

void EvaluateWordList(SlotIndex slot, std::string_view text, std::string_view delimiters, const FilterSet& set,
                      MatchResults& results) {
  const ListSubject subject{text, delimiters};
  SenderToken sender(results.message);
  for_each_entry(slot, kWordListValue, set, results, [&](const ListEntry& entry) {
    if (!word_file_answers(entry, subject, tag::kWord, set, results)) test_words(entry, subject, sender);
  });
}

}  // namespace pv
