// The record of one queued message: which it is, what its command file says, and the directories it is filtered with.
#pragma once

#include <cstdint>
#include <string>

#include "common/agent_settings.h"
#include "common/bounded_text.h"

namespace pv {

// What the command file says. A text longer than its field is cut.
struct Envelope {
  std::string recipients;   // as the MTA wrote them: "[SMTP:a@b]" joined by ";"; any length
  BoundedText<512> sender;  // in the bracketed connector form
  BoundedText<256> server;
  BoundedText<66> client_ip;
  BoundedText<128> account;  // the postoffice the message was accepted for
  BoundedText<128> user;     // the authenticated user
  BoundedText<16> status;    // the MTA's status word
  BoundedText<32> command_type;
  BoundedText<1024> subject;                     // as recorded by the MTA
  std::int32_t time_acquired = 0;                // when the message entered the queue, as the MTA wrote it
  std::int32_t authentication_status = 0;        // whether and how the sender authenticated
  std::int32_t authentication_status_check = 0;  // the same number again, for the SENDERAUTH criterion
};

// One message being filtered. Owned by the driver for the length of one FilterExecute call; copied whole to make new
// queue entries.
struct MessageContext {
  BoundedText<64> connector;   // the queue's name
  BoundedText<64> message_id;  // the file name of both queue files
  Envelope envelope;
  BoundedText<128> mailbox;  // set by the dispatcher for a mailbox's filters; else empty
  // The folder of the user's mailbox in which the store has put the message, for rules that mark it there. The command
  // file does not tell it; empty: the mailbox's own directory.
  BoundedText<128> store_folder;
  Directories directories;  // as read for this message
};

// Which of a connector's two queues holds the message: the server-wide filters see inbound ones, the filters of
// postoffices and mailboxes outgoing ones.
enum class Queue { kInbound, kOutgoing };

}  // namespace pv
