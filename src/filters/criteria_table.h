// The criteria table of one filter: line k (from 0) fills criterion slot k, 25 lines at most, tab-separated:
//
//     status <tab> keyword (not read) <tab> values, comma-separated <tab> - <tab> - <tab> minimum matches
#pragma once

#include <string_view>

#include "filters/filter_set.h"

namespace pv {

// Reads the table at `path` into the filter's slots; they stay as they are when it cannot be opened. Word files that
// its criteria name are loaded into the set's cache when "Allow Pattern Caching" is on.
void load_criteria_table(std::string_view path, FilterSet& set, FilterDefinition& filter);

}  // namespace pv
