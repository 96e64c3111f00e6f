#include "filters/match_results.h"

#include <algorithm>

#include "common/output.h"

namespace pv {

std::string_view FilterMatch::matched_text(SlotIndex slot) const {
  const std::unique_ptr<Detail>& detail = details_[static_cast<std::size_t>(slot)];
  return detail ? std::string_view(detail->text) : std::string_view();
}

void FilterMatch::set_matched_text(SlotIndex slot, std::string_view text) {
  if (text.empty() && matched_text(slot).empty()) return;
  detail(slot).text.assign(text.substr(0, kMatchedText - 1));
}

void FilterMatch::set_matched_text(SlotIndex slot, std::string_view tag, std::string_view value) {
  std::string& text = detail(slot).text;
  text.clear();
  for (const std::string_view part :
       {std::string_view("<"), tag, std::string_view(">"), value, std::string_view("</"), tag, std::string_view(">")}) {
    text.append(part.substr(0, kMatchedText - 1 - text.size()));
  }
}

std::string_view FilterMatch::match_value(SlotIndex slot, int entry) const {
  const std::unique_ptr<Detail>& detail = details_[static_cast<std::size_t>(slot)];
  if (!detail || entry < 0 || static_cast<std::size_t>(entry) >= detail->values.size()) return {};
  return detail->values[static_cast<std::size_t>(entry)];
}

void FilterMatch::set_match_value(SlotIndex slot, int entry, std::string_view value) {
  if (entry < 0 || entry >= kMaxEntries) return;
  std::vector<BoundedText<kMatchValue>>& values = detail(slot).values;
  const std::size_t index = static_cast<std::size_t>(entry);
  if (index >= values.size()) values.resize(index + 1);
  copy_bounded(values[index], value);
}

FilterMatch::Detail& FilterMatch::detail(SlotIndex slot) {
  std::unique_ptr<Detail>& detail = details_[static_cast<std::size_t>(slot)];
  if (!detail) detail = std::make_unique<Detail>();
  return *detail;
}

void AllocateMatchResults(const FilterSet& set, MatchResults& results) {
  print("Allocating %d Results\n", set.filter_count);
  results.matches.clear();
  results.matches.resize(static_cast<std::size_t>(std::max(set.filter_count, 0)));
  results.filter_count = set.filter_count;
}

void ReleaseMatchResults(MatchResults& results) {
  print("Releasing %d Results\n", results.filter_count);
  results.matches = std::vector<FilterMatch>();
  results.scratch = ScratchHold();
  results.filter_count = 0;
}

}  // namespace pv
