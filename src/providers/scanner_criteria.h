// What the scans have in common: the files that a request names, and the entries of a criterion.
#pragma once

#include <string_view>

#include "common/bounded_text.h"
#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

using ScannerRequest = BoundedText<2048>;  // cut beyond

// "<FILENAME>...</FILENAME><CMDFILE>...</CMDFILE>": the message's two files, in the queue that the filters' scope sees.
ScannerRequest request_of_files(const MessageContext& message, const FilterSet& set, std::string_view before = {});

// The text of an element of a reply, such as "99" of "<SP>99</SP>"; empty when a tag is missing.
std::string_view element(std::string_view reply, std::string_view opening, std::string_view closing);

// Entry `entry` (from 0) of a criterion: its field of the data. Empty when there is none, or it has 1024 bytes or more.
std::string_view criterion_entry(const CriterionSlot& criterion, int entry);

// Counts a match of the slot.
void count_match(SlotIndex slot, FilterMatch& match);

}  // namespace pv
