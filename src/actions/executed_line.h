// The report log's line about a fired filter and its actions:
//
//     Executed <tab> message id <tab> connector <tab> filter <tab> actions <tab> postoffice <tab> sender <tab> client
//     IP <tab> criteria text <tab> subject
#pragma once

#include <string_view>

#include "actions/dispatcher.h"
#include "actions/executed_actions.h"
#include "filters/filter_set.h"
#include "queue/message_context.h"

namespace pv {

// Tabs, line ends and NULs inside the values become blanks: the values come from the message, and must not forge lines
// or columns. The line ends that a filter's display name keeps from its table are dropped. A line that is too long is
// cut, and ends in its line feed all the same.
ReportLine executed_line(const MessageContext& message, const FilterSet& set, const FilterDefinition& filter,
                         std::string_view criteria_text, const ExecutedActions& executed);

}  // namespace pv
