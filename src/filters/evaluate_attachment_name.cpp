#include <array>
#include <cstddef>

#include "common/agent_settings.h"
#include "common/output.h"
#include "filters/compiled_filters.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/list_criteria.h"
#include "filters/match_pattern.h"
#include "queue/header_attributes.h"

namespace pv {
namespace {

// An attribute of the line, looked up when the first word needs it. One that is not found is asked for with every word,
// because a malformed one is reported at each look-up.
class LineAttribute {
 public:
  LineAttribute(std::string_view line, std::string_view name) : line_(line), name_(name) {}

  bool matches(std::string_view word, std::string_view delimiters, bool case_sensitive) {
    if (!found_) found_ = AttributeValue(line_, name_, value_);
    return found_ && MatchPattern(value_, word, delimiters, case_sensitive);
  }

 private:
  std::string_view line_;
  std::string_view name_;
  bool found_ = false;
  AttributeText value_;
};

void record_match(const ListEntry& entry, std::string_view word) {
  record_word(entry, tag::kAttachment, word);
  print_text("Attachment Criteria Met\n");
}

// By the compiled words. False when there are none, or an attribute is malformed, which is reported word by word.
bool record_compiled(SlotIndex slot, std::string_view header_line, std::string_view delimiters, const FilterSet& set,
                     MatchResults& results) {
  std::array<AttributeText, 2> values;
  std::array<std::string_view, 2> names;
  std::size_t count = 0;
  for (const std::string_view attribute : {"filename", "name"}) {
    const AttributeSearch search = find_attribute(header_line, attribute, values[count]);
    if (search == AttributeSearch::kMalformed) return false;
    if (search == AttributeSearch::kFound) {
      names[count] = values[count];
      ++count;
    }
  }
  const ListTexts texts{slot, ListEvaluator::kAttachmentName, {names.data(), count}, delimiters};
  return for_each_match(texts, CriterionWords::Entries::kMatching, set, results,
                        [&](const EntryMatches& found, FilterMatch& match) {
                          for (const std::string_view word : found.words) {
                            record_match({slot, found.entry, {}, match}, word);
                          }
                        });
}

}  // namespace

void EvaluateAttachmentName(SlotIndex slot, std::string_view header_line, std::string_view delimiters,
                            const FilterSet& set, MatchResults& results) {
  if (record_compiled(slot, header_line, delimiters, set, results)) return;
  LineAttribute file_name(header_line, "filename");
  LineAttribute name(header_line, "name");
  for_each_entry(slot, kAddressValue, set, results, [&](const ListEntry& entry) {
    const bool case_sensitive = case_sensitive_criteria();
    Words words(entry.value);
    while (const std::optional<std::string_view> word = words.next()) {
      if (!file_name.matches(*word, delimiters, case_sensitive) && !name.matches(*word, delimiters, case_sensitive)) {
        continue;
      }
      record_match(entry, *word);
    }
  });
}

}  // namespace pv
