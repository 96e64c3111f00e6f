#include "filters/walks.h"

#include "filters/evaluate_criterion.h"
#include "filters/printed_by.h"

namespace pv::test {
namespace {

void describe(SlotIndex slot, const FilterMatch& match, std::string& text) {
  text.append(std::to_string(match.match_count[static_cast<std::size_t>(slot)])).append(" ");
  text.append(match.matched_text(slot));
  for (int entry = 0; entry < kMaxEntries; ++entry) text.append("|").append(match.match_value(slot, entry));
  text.append("\n");
}

}  // namespace

std::string outcome(const std::vector<std::string>& texts, const FilterSet& set, const MessageContext& message) {
  std::string recorded;
  const std::string printed = printed_by([&] {
    MatchResults results;
    AllocateMatchResults(set, results);
    results.message = &message;
    for (const std::string& text : texts) {
      for (const ListCriterion& criterion : kListCriteria) evaluate(criterion, text, set, results);
      for (FilterIndex i = 1; i <= set.filter_count; ++i) {
        for (SlotIndex slot = 0; slot < kSlotCount; ++slot) describe(slot, results.match(i), recorded);
      }
    }
  });
  return printed + recorded;
}

}  // namespace pv::test
