#include "match_summary.h"

#include <cstddef>

#include "filters/criteria_keywords.h"
#include "fuzz_target.h"

namespace pv::fuzz {
namespace {

void add_slot(SlotIndex slot, const FilterMatch& match, std::string& text) {
  text.append(std::to_string(match.match_count[static_cast<std::size_t>(slot)])).append(" ");
  text.append(match.matched_text(slot));
  for (int entry = 0; entry < kMaxEntries; ++entry) text.append("|").append(match.match_value(slot, entry));
  text.append("\n");
}

void require_slot_within_limits(SlotIndex slot, const CriterionSlot& criterion, const FilterMatch& match) {
  const std::int32_t count = match.match_count[static_cast<std::size_t>(slot)];
  require(count >= 0, "a count is no less than 0");
  require(match.matched_text(slot).size() < kMatchedText, "a description within its limit");
  if (criterion.status != 1) {
    require(count == 0 && match.matched_text(slot).empty(), "a slot that is not in use is not touched");
  }
  for (int entry = 0; entry < kMaxEntries; ++entry) {
    require(match.match_value(slot, entry).size() < kMatchValue, "a match value within its limit");
    require(entry < criterion.entry_count || match.match_value(slot, entry).empty(), "values only of entries");
  }
}

}  // namespace

std::string summary(const MatchResults& results) {
  std::string text;
  for (FilterIndex i = 1; i <= results.filter_count; ++i) {
    for (SlotIndex slot = 0; slot < kSlotCount; ++slot) add_slot(slot, results.match(i), text);
  }
  return text;
}

void require_within_limits(const FilterSet& set, const MatchResults& results) {
  require(results.filter_count == set.filter_count, "one result for each filter");
  for (FilterIndex i = 1; i <= set.filter_count; ++i) {
    const FilterMatch& match = results.match(i);
    for (SlotIndex slot = 0; slot < kSlotCount; ++slot) {
      require_slot_within_limits(slot, set.filter(i).slots[static_cast<std::size_t>(slot)], match);
    }
    require(match.match_count[kHasAnAttachment] <= 1, "attachments count once a message");
    require(match.match_count[kSize] <= 1, "the size counts once a message");
  }
}

}  // namespace pv::fuzz
