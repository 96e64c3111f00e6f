// Putting a message into a server's inbound queue, as a mail server does.
#pragma once

#include <filesystem>
#include <string>

#include "pvfilter/envelope_options.h"
#include "pvfilter/server_tree.h"

namespace pvfilter {

struct QueuedMessage {
  std::string id;
  std::filesystem::path command_file;
  std::filesystem::path message_file;
  std::string bytes;  // of the message file, as queued
};

// Reads `file` and queues it under a new identifier: the message file first, the command file last. A file whose lines
// end in bare line feeds gets CR LF, as mail has them on the way, unless the options ask for it raw. The connector
// "LS", which delivers into mailboxes, also gets the message file in its outgoing queue. Throws CommandError.
QueuedMessage queue_message(const Server& server, const EnvelopeOptions& envelope, const std::string& file);

}  // namespace pvfilter
