#include "actions/decision.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "common/formats.h"
#include "filters/criteria_keywords.h"
#include "script/decision_script.h"

namespace pv {
namespace {

constexpr std::size_t kReportedMatch = 511;  // bytes of the matched text that reports show

std::optional<SlotIndex> last_met_criterion(const FilterDefinition& filter, const FilterMatch& match) {
  for (std::size_t slot = kSlotCount; slot-- > 0;) {
    const CriterionSlot& criterion = filter.slots[slot];
    if (criterion.status == 1 && match.match_count[slot] >= criterion.minimum_matches) {
      return static_cast<SlotIndex>(slot);
    }
  }
  return std::nullopt;
}

Decision decide_by_table(const FilterDefinition& filter, const FilterMatch& match) {
  Decision decision;
  const std::optional<SlotIndex> slot = last_met_criterion(filter, match);
  if (!slot) return decision;
  decision.fires = true;
  const std::string_view keyword = kCriteriaKeywords[static_cast<std::size_t>(*slot)];
  const std::string_view text = match.matched_text(*slot).substr(0, kReportedMatch);
  copy_bounded(decision.criterion_name, keyword);
  decision.criteria_text = format_text("CRITERIA=%.*s, DATA=%.*s", static_cast<int>(keyword.size()), keyword.data(),
                                       static_cast<int>(text.size()), text.data());
  return decision;
}

}  // namespace

Decision decide(const MessageContext& message, const FilterSet& set, FilterIndex index, const MatchResults& results) {
  if (!set.filter(index).is_script) return decide_by_table(set.filter(index), results.match(index));
  Decision decision;
  decision.fires = RunDecisionScript(message, set, index, results, decision.criteria_text) == 1;
  copy_bounded(decision.criterion_name, decision.criteria_text);
  return decision;
}

}  // namespace pv
