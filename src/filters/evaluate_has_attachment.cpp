#include "common/output.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/list_criteria.h"

namespace pv {

void EvaluateHasAttachment(SlotIndex slot, std::string_view header_line, std::string_view /*delimiters*/,
                           const FilterSet& set, MatchResults& results) {
  for_each_criterion(slot, set, results, [&](const CriterionSlot& criterion, FilterMatch& match) {
    std::int32_t& count = match.match_count[static_cast<std::size_t>(slot)];
    if (count >= 1) return;
    if (contains_nocase(header_line, "name=")) {
      count = 1;
      match.set_matched_text(slot, tag::kHasAttachment, "1");
      print_text("Message Body Has Attachment Criteria Met\n");
    }
    set_all_match_values(slot, criterion, count == 1 ? "1" : "0", match);
  });
}

}  // namespace pv
