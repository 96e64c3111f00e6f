// The criterion tokens of a decision script.
#include <cstddef>
#include <string>
#include <string_view>

#include "filters/script_tokens.h"
#include "fuzz_target.h"

namespace pv::fuzz {
namespace {

std::size_t occurrences(std::string_view text, std::string_view part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

FilterSet parsed(std::string_view script) {
  FilterSet set;
  set.filters.emplace_back();
  set.filter_count = 1;
  ParseScriptFilter(set, script);
  return set;
}

// Conditions are taken from the script as they stand; a token without one has a carriage return.
void require_from_script(std::string_view data, std::string_view script) {
  while (!data.empty()) {
    const std::string_view field = take_until('\t', data);
    require(field == "\r" || script.find(field) != std::string_view::npos, "a condition stands in the script");
  }
}

void run(std::string_view script) {
  const FilterSet set = parsed(script);
  const FilterSet again = parsed(script);
  std::size_t entries = 0;
  for (std::size_t i = 0; i < kSlotCount; ++i) {
    const CriterionSlot& slot = set.filter(1).slots[i];
    entries += static_cast<std::size_t>(slot.entry_count);
    require(slot.entry_count >= 0 && slot.entry_count <= kMaxEntries, "entries within the limit");
    require(slot.status == (slot.entry_count > 0 ? 1 : 0), "a slot with entries is in use, no other");
    require(slot.entry_count > 0 || slot.data.empty(), "no entries, no values");
    require(slot.data == again.filter(1).slots[i].data, "the same script gives the same values");
    require_from_script(slot.data, script);
  }
  require(entries <= occurrences(script, "[PV_"), "no more entries than tokens");
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
