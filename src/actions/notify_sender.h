// Tells the sender of a message what became of it.
#pragma once

#include <string_view>

#include "actions/token_block.h"
#include "queue/message_context.h"

namespace pv {

// Queues a notification for the filtered message's sender, whose field becomes the recipients as it is. Its default
// text goes "To: <address>", the address empty when the field is not in the bracketed form. Prints the sender field.
// True when the notification's message file was written.
[[nodiscard]] bool NotifySender(const MessageContext& message, std::string_view template_name, const TokenBlock& tokens,
                                std::string_view display_name, std::string_view description, Queue queue);

}  // namespace pv
