// Whether a filter fires, and the reason that reports give.
#pragma once

#include "common/bounded_text.h"
#include "filters/filter_set.h"
#include "filters/match_results.h"
#include "queue/message_context.h"

namespace pv {

struct Decision {
  bool fires = false;
  BoundedText<1024> criteria_text;  // "CRITERIA=SUBJECT, DATA=<MF-W>free</MF-W>", or the script's result text
  BoundedText<256> criterion_name;  // "SUBJECT", or the beginning of the script's result text
};

// A table filter fires when one of its criteria in use has reached its minimum count; the last such criterion is the
// one reported. A script filter fires when its script's verdict is exactly 1.
Decision decide(const MessageContext& message, const FilterSet& set, FilterIndex index, const MatchResults& results);

}  // namespace pv
