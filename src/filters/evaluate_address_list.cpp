#include <charconv>
#include <iterator>

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

void announce_list(int field_count) {
  // Said for every list of every filter: not worth a format.
  char digits[16];
  const std::to_chars_result end = std::to_chars(std::begin(digits), std::end(digits), field_count);
  const std::string_view count(digits, static_cast<std::size_t>(end.ptr - digits));
  print_parts({"Processing Recipient List of ", count, " delimiters\r\n"});
}

void record_match(const ListEntry& entry, std::string_view word) {
  record_word(entry, tag::kRecipient, word);
  print_text("Message sender/recipient criteria met\n");
}

void test_words(const ListEntry& entry, const ListSubject& subject, SenderToken& sender) {
  const bool case_sensitive = case_sensitive_criteria();
  Words words(entry.value);
  announce_list(words.remaining());
  while (const std::optional<std::string_view> written = words.next()) {
    const std::string_view word = sender.put_into(*written, kAddressValue);
    if (MatchPattern(subject.text, word, subject.delimiters, case_sensitive)) record_match(entry, word);
  }
}

// Word by word: what the compiled words are made to agree with.
void walk_words(SlotIndex slot, const ListSubject& subject, const FilterSet& set, MatchResults& results) {
  SenderToken sender(results.message);
  for_each_entry(slot, kAddressValue, set, results, [&](const ListEntry& entry) {
    if (!word_file_answers(entry, subject, tag::kWord, set, results)) test_words(entry, subject, sender);
  });
}

}  // namespace

void EvaluateAddressList(SlotIndex slot, std::string_view text, std::string_view delimiters, const FilterSet& set,
                         MatchResults& results) {
  // A word file is a list of words whatever it is matched against, hence its other tag.
  const auto record = [&](const EntryMatches& found, FilterMatch& match) {
    if (record_file_lines(found, slot, tag::kWord, match)) return;
    announce_list(found.field_count);
    for (const std::string_view word : found.words) record_match({slot, found.entry, {}, match}, word);
  };
  const ListTexts texts{slot, ListEvaluator::kAddressList, {&text, 1}, delimiters};
  if (for_each_match(texts, CriterionWords::Entries::kAll, set, results, record)) return;

  walk_words(slot, {text, delimiters}, set, results);
}

}  // namespace pv
