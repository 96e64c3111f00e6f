#include "common/agent_settings.h"
#include "common/output.h"
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

}  // namespace

void EvaluateAttachmentName(SlotIndex slot, std::string_view header_line, std::string_view delimiters,
                            const FilterSet& set, MatchResults& results) {
  LineAttribute file_name(header_line, "filename");
  LineAttribute name(header_line, "name");
  for_each_entry(slot, kAddressValue, set, results, [&](const ListEntry& entry) {
    const bool case_sensitive = case_sensitive_criteria();
    Words words(entry.value);
    while (const std::optional<std::string_view> word = words.next()) {
      if (!file_name.matches(*word, delimiters, case_sensitive) && !name.matches(*word, delimiters, case_sensitive)) {
        continue;
      }
      record_word(entry, tag::kAttachment, *word);
      print_text("Attachment Criteria Met\n");
    }
  });
}

}  // namespace pv
