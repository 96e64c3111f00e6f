// Adds or replaces one header of a queued message, through the temporary file "_<message id>" beside it.
//
// Failure policy: the message keeps its old bytes until the new ones are complete; on any error the temporary file is
// removed and the result is false. Not handled: two agents at work on the same message.
#pragma once

#include <string_view>

#include "queue/message_context.h"

namespace pv {

// Every header line of this name (in any case) becomes "name: value"; its folded lines stay. Without one the header is
// added at the end of the header block, which is also given its empty line when the file ends inside it. All other
// bytes stay as they are. A CR, LF or NUL in name or value is written as a blank, so that a value from the message
// itself cannot add headers of its own. An empty name is refused. Takes constant memory.
[[nodiscard]] bool AddHeader(const MessageContext& message, std::string_view name, std::string_view value, Queue queue);

}  // namespace pv
