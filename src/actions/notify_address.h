// Tells a configured address what became of a message.
#pragma once

#include <string_view>

#include "actions/token_block.h"
#include "queue/message_context.h"

namespace pv {

// Queues a notification for the address of a notification reference:
//
//     <REFERENCE><FILE>Virus</FILE><ADDRESS>admin@example.org</ADDRESS>
//
// Without file name, or with one of more than 63 bytes, the default text is sent, "To:" the address as it is. An empty
// address is taken; without address, or with one of more than 1023 bytes, a line is printed and the action fails. It
// fails, too, when the data does not begin with "<REFERENCE>", letter case as here. Prints the address. True when the
// notification's message file was written.
[[nodiscard]] bool NotifyAddress(const MessageContext& message, std::string_view reference, const TokenBlock& tokens,
                                 std::string_view display_name, std::string_view description, Queue queue);

}  // namespace pv
