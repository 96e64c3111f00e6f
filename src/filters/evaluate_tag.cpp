#include "filters/evaluation.h"
#include "filters/list_criteria.h"

namespace pv {

void EvaluateTag(SlotIndex slot, std::string_view tag, std::string_view text, const FilterSet& set,
                 MatchResults& results) {
  for_each_criterion(slot, set, results, [&](const CriterionSlot& criterion, FilterMatch& match) {
    ++match.match_count[static_cast<std::size_t>(slot)];
    match.set_matched_text(slot, tag, text);
    set_all_match_values(slot, criterion, "1", match);
  });
}

}  // namespace pv
