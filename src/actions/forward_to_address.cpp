#include "actions/forward_to_address.h"

#include <string>

#include "actions/add_header.h"
#include "actions/append_recipients.h"
#include "actions/new_message.h"
#include "common/files.h"
#include "platform/file.h"
#include "queue/envelope_file.h"
#include "queue/queue_paths.h"

namespace pv {
namespace {

bool add_marks(const MessageContext& copy, std::string_view postoffice, std::string_view mailbox) {
  if (!AddHeader(copy, "X-PVFilter", "1", Queue::kInbound)) return false;
  if (postoffice.empty() || !mailbox.empty()) return true;
  return AddHeader(copy, "X-PV-POFilter", postoffice, Queue::kInbound);
}

}  // namespace

bool ForwardToAddress(const MessageContext& message, std::string_view address, std::string_view postoffice,
                      std::string_view mailbox) {
  MessageContext copy = new_message(message, forward_sender_address());
  copy.envelope.recipients.clear();
  AppendRecipient(copy, address);

  const Queue queue = postoffice.empty() ? Queue::kInbound : Queue::kOutgoing;
  const std::string copy_path = message_file_path(copy, Queue::kInbound);
  if (file_exists(copy_path) || !platform::copy_file(message_file_path(message, queue), copy_path)) return false;
  if (!add_marks(copy, postoffice, mailbox)) {
    (void)platform::remove_file(copy_path);
    return false;
  }
  (void)write_inbound_envelope(copy);
  return true;
}

}  // namespace pv
