#include <string>

#include "common/fields.h"
#include "common/formats.h"
#include "common/output.h"
#include "filters/evaluation.h"
#include "filters/list_criteria.h"

namespace pv {
namespace {

constexpr std::size_t kLimitField = 1024;  // bytes, terminator included; a longer field reads as 0

// What the script gets for one entry: the size itself where it named the criterion without a limit, which the table of
// entries holds as a carriage return; else whether the size exceeds the entry's limit.
std::string size_value(std::int32_t size_bytes, const CriterionSlot& criterion, int entry) {
  std::string_view limit = find_field(criterion.data, "\t", entry + 1).value_or(std::string_view());
  if (limit.size() >= kLimitField) limit = {};
  if (!limit.empty() && limit.front() == '\r') return std::to_string(size_bytes);
  return size_bytes > leading_number(limit) ? "1" : "0";
}

}  // namespace

void EvaluateSize(SlotIndex slot, std::int32_t size_bytes, const FilterSet& set, MatchResults& results) {
  print("Message Size detected as %ld\r\n", static_cast<long>(size_bytes));
  for_each_criterion(slot, set, results, [&](const CriterionSlot& criterion, FilterMatch& match) {
    if (size_bytes > leading_number(criterion.data)) {
      // Set, not added: a message has one size, so the count says yes or no.
      match.match_count[static_cast<std::size_t>(slot)] = 1;
      match.set_matched_text(
          slot, format_text("<SZ>%ld</SZ><SZL>%s</SZL>", static_cast<long>(size_bytes), criterion.data.c_str()));
    }
    for (int entry = 0; entry < entries_of(criterion); ++entry) {
      match.set_match_value(slot, entry, size_value(size_bytes, criterion, entry));
    }
  });
}

}  // namespace pv
