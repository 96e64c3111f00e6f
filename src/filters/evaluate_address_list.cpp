#include "common/agent_settings.h"
#include "common/output.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/list_criteria.h"
#include "filters/match_pattern.h"
#include "filters/sender_token.h"

namespace pv {
namespace {

void test_words(const ListEntry& entry, const ListSubject& subject, SenderToken& sender) {
  const bool case_sensitive = case_sensitive_criteria();
  Words words(entry.value);
  print("Processing Recipient List of %d delimiters\r\n", words.remaining());
  while (const std::optional<std::string_view> written = words.next()) {
    const std::string_view word = sender.put_into(*written, kAddressValue);
    if (!MatchPattern(subject.text, word, subject.delimiters, case_sensitive)) continue;
    record_word(entry, tag::kRecipient, word);
    print_text("Message sender/recipient criteria met\n");
  }
}

}  // namespace

void EvaluateAddressList(SlotIndex slot, std::string_view text, std::string_view delimiters, const FilterSet& set,
                         MatchResults& results) {
  const ListSubject subject{text, delimiters};
  SenderToken sender(results.message);
  for_each_entry(slot, kAddressValue, set, results, [&](const ListEntry& entry) {
    // A word file is a list of words whatever it is matched against, hence its other tag.
    if (!word_file_answers(entry, subject, tag::kWord, set, results)) test_words(entry, subject, sender);
  });
}

}  // namespace pv
