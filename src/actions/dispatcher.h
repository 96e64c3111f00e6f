// From match results to actions: which filters fire, and what they do to the message.
#pragma once

#include <cstdint>

#include "common/bounded_text.h"
#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

// What became of a message's filters.
enum class FilterOutcome : std::int32_t {
  kNothing = 0,  // no filter fired
  kFired = 1,
  kStopped = 2,  // a mailbox rule removed the message; nothing after it ran
};

using ReportLine = BoundedText<2048>;

// Walks the filters in table order and carries out the actions of those that fire. Every filter with executed actions
// writes one "Executed" line to the report log; `report_line` keeps the last one and stays as it is without any. A
// mailbox's rules also write the message's account and mailbox.
FilterOutcome ExecuteFilterActions(MessageContext& message, const FilterSet& set, const MatchResults& results,
                                   ReportLine& report_line);

}  // namespace pv
