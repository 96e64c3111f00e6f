// Deleting a queued message.
#pragma once

#include "queue/message_context.h"

namespace pv {

// Removes the command file, then the message file. True when both are gone. When the command file cannot be removed the
// message file stays, so that the queue keeps the message whole.
[[nodiscard]] bool DeleteQueuedMessage(const MessageContext& message, Queue queue);

}  // namespace pv
