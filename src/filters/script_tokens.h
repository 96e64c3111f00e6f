// The criterion tokens of a decision script: "[PV_SUBJECT]", optionally followed by a comma and a condition.
#pragma once

#include <string_view>

#include "filters/filter_set.h"

namespace pv {

// Adds every token of `script_text` as one entry to the slot of the set's last filter that it names: the condition in
// reading order, or a carriage return for a token without one. Unknown tokens are passed over; beyond kMaxEntries a
// slot counts no further occurrences.
void ParseScriptFilter(FilterSet& set, std::string_view script_text);

}  // namespace pv
