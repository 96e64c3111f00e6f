// The command file: a message's envelope, one "Key=value" a line, written by the MTA.
//
//     Recipients=[SMTP:jane@example.org];[SMTP:joe@example.org]
//     Sender=[SMTP:ann@example.com]
//     ClientIP=192.0.2.7
//
// The bytes end their lines in CR LF. A line ends at its first NUL.
//
// Failure policy: a command file that cannot be read leaves the envelope empty, and the message is filtered all the
// same. A new one is complete or not there. Not handled: two agents at work on the same message.
#pragma once

#include "queue/message_context.h"

namespace pv {

// Reads the command file of the inbound message that `context` names into its envelope, which is cleared first. Keys
// stand at the very start of a line, in exactly this spelling; the last line of a key counts. The last byte of a line
// is its line feed: a file that ends without one loses a byte. Lines of more than 24999 bytes are read in pieces, each
// tested (and shortened by a byte) as a line of its own. Uses the same memory for a file of any size.
void read_inbound_envelope(MessageContext& context);

// Writes the command file of the inbound message that `context` names, replacing any: recipients, server, sender, time
// acquired and status. A value is cut at its first CR, LF or NUL, so that it cannot make a line of its own; recipients
// of more bytes than a line are written whole, though read_inbound_envelope would not read them back. False when the
// file cannot be written whole; then an existing one is as it was.
[[nodiscard]] bool write_inbound_envelope(const MessageContext& context);

}  // namespace pv
