// Messages that the agent queues itself: notifications and forwarded copies.
//
// The message file comes first and the command file last, so that an MTA finds a message only when it is complete. Both
// go into the inbound queue of the filtered message's connector, under a new identifier.
#pragma once

#include <string>
#include <string_view>

#include "queue/message_context.h"

namespace pv {

// The setting "Bad Mail Notification Sender Address"; empty when it is not set. A CR or LF in it becomes a blank.
std::string notification_sender_address();

// The setting "Forward Sender Address", or the one above when it is not set.
std::string forward_sender_address();

// The filtered message's context under a new identifier, sent by "[SMTP:sender_address]" (cut to 511 bytes) and
// "Undelivered". Recipients, server and time are those of the filtered message.
MessageContext new_message(const MessageContext& filtered, std::string_view sender_address);

}  // namespace pv
