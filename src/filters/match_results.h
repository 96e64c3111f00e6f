// What the evaluators found in one message, for every filter of a set.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/bounded_text.h"
#include "filters/filter_set.h"
#include "filters/scratch_hold.h"
#include "queue/message_context.h"

namespace pv {

// One filter's results. Texts and values are stored only for slots that received some, so a filter that met nothing
// costs a few hundred bytes.
class FilterMatch {
 public:
  std::array<std::int32_t, kSlotCount> match_count{};  // per slot: matches counted

  // A tagged description of the slot's last match, such as "<MF-W>free</MF-W>"; empty without one.
  std::string_view matched_text(SlotIndex slot) const;
  void set_matched_text(SlotIndex slot, std::string_view text);                         // cut to 1023 bytes
  void set_matched_text(SlotIndex slot, std::string_view tag, std::string_view value);  // "<tag>value</tag>", cut

  // What the decision script receives for one entry (0 to kMaxEntries - 1); empty when nothing wrote it. Entries beyond
  // are ignored.
  std::string_view match_value(SlotIndex slot, int entry) const;
  void set_match_value(SlotIndex slot, int entry, std::string_view value);  // cut to 15 bytes

 private:
  struct Detail {
    std::string text;
    std::vector<BoundedText<kMatchValue>> values;  // as far as the last entry written
  };
  Detail& detail(SlotIndex slot);
  std::array<std::unique_ptr<Detail>, kSlotCount> details_;
};

// One message, one filter set. Lives for one message; used by its thread alone.
struct MatchResults {
  std::int32_t filter_count = 0;
  std::vector<FilterMatch> matches;
  const MessageContext* message = nullptr;  // the message being filtered; set by the driver, borrowed
  ScratchHold scratch;                      // of the evaluators
  // Counts what the message waited for since it began: a block of its file, somebody's answer. Until it grows, whatever
  // others do meanwhile may as well have been done before or after.
  std::uint32_t moment = 0;

  FilterMatch& match(FilterIndex index) { return matches[static_cast<std::size_t>(index - 1)]; }
  const FilterMatch& match(FilterIndex index) const { return matches[static_cast<std::size_t>(index - 1)]; }
};

// Makes one empty record per filter of the set.
void AllocateMatchResults(const FilterSet& set, MatchResults& results);
void ReleaseMatchResults(MatchResults& results);

}  // namespace pv
