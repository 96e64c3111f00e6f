#include <string>

#include "common/fields.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/list_criteria.h"

namespace pv {

void EvaluateNumberEquals(SlotIndex slot, std::int32_t number, const FilterSet& set, MatchResults& results) {
  for_each_criterion(slot, set, results, [&](const CriterionSlot& criterion, FilterMatch& match) {
    if (number == leading_number(criterion.data)) {
      ++match.match_count[static_cast<std::size_t>(slot)];
      match.set_matched_text(slot, tag::kSenderAuth, "1");
    }
    set_all_match_values(slot, criterion, std::to_string(number), match);
  });
}

}  // namespace pv
