// Whose mailbox the rules of a mailbox put messages into.
#pragma once

#include <string_view>

#include "queue/message_context.h"

namespace pv {

// The user of the command file; where it names none, the mailbox that the rules belong to.
inline std::string_view mailbox_of_rules(const MessageContext& message) {
  return message.envelope.user.empty() ? message.mailbox.view() : message.envelope.user.view();
}

}  // namespace pv
