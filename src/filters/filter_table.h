// Loading a scope's filters from its tables, and releasing them.
//
// FILTER.TAB has one filter a row, tab-separated:   name <tab> status <tab> definition name <tab> - <tab> display name
// A row whose status reads as 0 is skipped. A filter's criteria are <definition name>.PVS (a decision script) if that
// file exists, else <definition name>.TAB (filters/criteria_table.h).
//
// Failure policy: nothing fails. A missing filter table is an empty set, a missing criteria table a filter that never
// fires; fields too long for their column come out empty.
#pragma once

#include <memory>

#include "filters/filter_set.h"

namespace pv {

// Makes the set ready for loading: no filters counted, no script filters. Frees nothing.
void ResetFilterSet(FilterSet& set);

// Loads the scope named by the set's postoffice and mailbox, at most kMaxFilters enabled rows, appending to its
// filters, from the configuration directory as it was last read.
void LoadFilterSet(FilterSet& set);

// Frees the set's filters and word files. The count stays for the caller to reset.
void ReleaseFilterSet(FilterSet& set);

// The same for a set that messages share: the caller gives up its hold, and the last user frees the set. An empty
// pointer stands for an empty set.
void ReleaseFilterSet(std::shared_ptr<const FilterSet>& set);

}  // namespace pv
