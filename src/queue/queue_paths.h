// Where a queued message's two files lie:
//
//     <connector root>/<connector>/Inbound/<message id>                 the command file (envelope)
//     <connector root>/<connector>/Inbound/Messages/<message id>        the message file (RFC 5322 text)
//     <connector root>/<connector>/Inbound/Messages/_<message id>       its new version while it is rewritten
//     <connector root>/<connector>/Inbound/Messages/_<message id>.cmd   a new command file while it is written
//
// and the same below Outgoing. The new command file is kept out of the directory where the MTA looks for command files,
// so that it never takes half an envelope for a message.
#pragma once

#include <string>

#include "queue/message_context.h"

namespace pv {

std::string command_file_path(const MessageContext& message, Queue queue);
std::string message_file_path(const MessageContext& message, Queue queue);
std::string temporary_message_file_path(const MessageContext& message, Queue queue);
std::string temporary_command_file_path(const MessageContext& message, Queue queue);

}  // namespace pv
