// Queues a copy of the filtered message for another address.
//
// Failure policy: the copy is made beside its place and gets its command file only when it is complete and carries the
// mark. Before that, any error removes it. Without the mark the agent would filter the copy, and forward it again
// without end, so a copy that cannot be marked is not sent.
#pragma once

#include <string_view>

#include "queue/message_context.h"

namespace pv {

// Copies the message (of the inbound queue when `postoffice` is empty, else of the outgoing one) into the inbound queue
// under a new identifier, for `address` in the form AppendRecipient gives it. The copy gets the header "X-PVFilter: 1",
// and the one of a postoffice's filter (`mailbox` empty) "X-PV-POFilter: postoffice"; all other bytes are the same.
// Both come first where the scan would not find them among the message's headers (one of them longer than a line it
// reads). True when the copy was made: that its command file could not be written is not reported, and the copy then
// stays without one. Never replaces a file.
[[nodiscard]] bool ForwardToAddress(const MessageContext& message, std::string_view address,
                                    std::string_view postoffice, std::string_view mailbox);

}  // namespace pv
