// What the three notifications share: a short new message about the filtered one.
//
// Failure policy: the message file is complete before the command file is written, and a notification that fails leaves
// neither. That the command file could not be written is not reported: the notification counts as queued, and its
// message file stays without one. A template that cannot be opened is no failure: the default text is sent.
#pragma once

#include <string_view>

#include "actions/notification_text.h"
#include "queue/message_context.h"

namespace pv {

// A notification about to be written. The views are the caller's.
struct NotificationRequest {
  const MessageContext& filtered;
  Queue queue;                     // which copy of the filtered message the scope acts on
  std::string_view template_name;  // empty: the default text
  std::string_view tokens;         // the fired filter's tagged values
  std::string_view display_name;   // the filter's; line ends at its end are dropped
  std::string_view description;    // the action's
};

// Writes the message file of `notification` (new, with its recipients) from the template or the default text, whose To
// header has the value `to`, then its command file. Prints the template's path without a line end. `from` is the
// notification sender address. False when either message file cannot be opened, read or written.
[[nodiscard]] bool queue_notification(const NotificationRequest& request, const MessageContext& notification,
                                      std::string_view from, std::string_view to, const NotificationForm& form);

}  // namespace pv
