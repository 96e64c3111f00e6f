#include "actions/forward_to_address.h"

#include <optional>
#include <string>

#include "actions/add_header.h"
#include "actions/append_recipients.h"
#include "actions/filter_mark.h"
#include "actions/new_message.h"
#include "actions/one_line.h"
#include "common/files.h"
#include "platform/file.h"
#include "queue/envelope_file.h"
#include "queue/queue_paths.h"

namespace pv {
namespace {

constexpr char kPostofficeMark[] = "X-PV-POFilter";

// In each, `postoffice` is empty for a copy that is not marked as a postoffice's.
bool add_marks(const MessageContext& copy, std::string_view postoffice) {
  if (!AddHeader(copy, kFilterMark, "1", Queue::kInbound)) return false;
  return postoffice.empty() || AddHeader(copy, kPostofficeMark, postoffice, Queue::kInbound);
}

bool mark_copy(std::string_view from, const MessageContext& copy, std::string_view postoffice) {
  if (!add_marks(copy, postoffice)) return false;
  const std::optional<bool> seen = scan_sees_mark(message_file_path(copy, Queue::kInbound));
  if (!seen || *seen) return seen.has_value();
  std::string marks = std::string(kFilterMark) + ": 1\r\n";
  if (!postoffice.empty()) marks.append(kPostofficeMark).append(": ").append(on_one_line(postoffice)).append("\r\n");
  return put_before(marks, from, copy);
}

}  // namespace

bool ForwardToAddress(const MessageContext& message, std::string_view address, std::string_view postoffice,
                      std::string_view mailbox) {
  MessageContext copy = new_message(message, forward_sender_address());
  copy.envelope.recipients.clear();
  AppendRecipient(copy, address);

  const Queue queue = postoffice.empty() ? Queue::kInbound : Queue::kOutgoing;
  const std::string copy_path = message_file_path(copy, Queue::kInbound);
  const std::string path = message_file_path(message, queue);
  if (file_exists(copy_path) || !platform::copy_file(path, copy_path)) return false;
  if (!mark_copy(path, copy, mailbox.empty() ? postoffice : std::string_view())) {
    (void)platform::remove_file(copy_path);
    return false;
  }
  (void)write_inbound_envelope(copy);
  return true;
}

}  // namespace pv
