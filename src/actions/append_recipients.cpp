#include "actions/append_recipients.h"

#include <cstddef>
#include <string>

#include "actions/one_line.h"
#include "common/files.h"
#include "queue/envelope_file.h"
#include "queue/queue_paths.h"

namespace pv {

bool AppendRecipient(MessageContext& message, std::string_view address) {
  std::string& recipients = message.envelope.recipients;
  const std::string text = on_one_line(without_line_ends(address));
  if (!recipients.empty()) recipients += ';';
  const bool bracketed = text.find('[') != std::string::npos;
  recipients += bracketed ? text : "[SMTP:" + text + "]";
  return true;
}

bool AppendRecipients(MessageContext& message, std::string_view addresses, Queue queue) {
  if (queue == Queue::kInbound && !file_exists(command_file_path(message, queue))) return false;
  const std::size_t old_size = message.envelope.recipients.size();
  AppendRecipient(message, addresses);
  if (write_inbound_envelope(message)) return true;
  message.envelope.recipients.resize(old_size);
  return false;
}

}  // namespace pv
