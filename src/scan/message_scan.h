// The scan of a message: one pass over its lines, which feeds everything found to the criteria evaluators.
//
// Failure policy: a message that cannot be opened is left alone. Whatever bytes the message holds, each line of the
// file is read once into a fixed buffer; the scan never fails on content.
#pragma once

#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

// False when the filters must not be applied: the message file cannot be opened, or its header block carries the mark
// "X-PVFilter: " of a message that was filtered before ("X-PV-POFilter: " with the postoffice's name for a postoffice's
// filters). What was evaluated until then stays in the results.
bool ScanMessage(const MessageContext& message, const FilterSet& set, MatchResults& results);

}  // namespace pv
