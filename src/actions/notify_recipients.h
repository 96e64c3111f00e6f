// Tells the recipients of a message what became of it.
#pragma once

#include <string_view>

#include "actions/token_block.h"
#include "queue/message_context.h"

namespace pv {

// Queues a notification for the filtered message's recipients, all in one command file. Its default text goes "To:
// Undisclosed-Recipients". True when the notification's message file was written.
[[nodiscard]] bool NotifyRecipients(const MessageContext& message, std::string_view template_name,
                                    const TokenBlock& tokens, std::string_view display_name,
                                    std::string_view description, Queue queue);

}  // namespace pv
