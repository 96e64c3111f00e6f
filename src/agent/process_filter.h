// The filtering of one queued message, from the reload check to its actions.
#pragma once

#include <string_view>

#include "actions/dispatcher.h"

namespace pv {

// Filters the message `message_id` in the queue of `connector`; a message whose names have more than 63 bytes is
// reported and left alone. The outcome is kNothing also for an empty filter set, and for a message that cannot be
// opened or was filtered before. `report_line` as the dispatcher leaves it. Any thread, several messages at once.
FilterOutcome ProcessFilter(std::string_view connector, std::string_view message_id, ReportLine& report_line);

}  // namespace pv
