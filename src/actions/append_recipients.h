// Further recipients for a queued message.
//
// Failure policy: the command file is replaced in one step. When that fails it keeps its old bytes, and the message its
// old recipients.
#pragma once

#include <string_view>

#include "queue/message_context.h"

namespace pv {

// Appends an address to the recipients, after a ";" unless it is the first. One without "[" is put into the bracketed
// connector form "[SMTP:address]", any other (a list "[SMTP:a];[SF:b]" too) is taken as it is. Line ends at its end are
// dropped; a CR, LF or NUL inside becomes a blank, because it would end the line of the command file. Always true.
bool AppendRecipient(MessageContext& message, std::string_view address);

// The same for the message itself: `addresses` are appended and its command file is written anew, in the inbound queue
// whatever the scope. The new command file has five keys; client address, account, user, subject and authentication of
// the old one are no longer in it. False when it cannot be written, and for an inbound message whose command file is
// gone: a deleted message must not come back.
[[nodiscard]] bool AppendRecipients(MessageContext& message, std::string_view addresses, Queue queue);

}  // namespace pv
