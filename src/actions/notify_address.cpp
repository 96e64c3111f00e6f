#include "actions/notify_address.h"

#include <string>

#include "actions/append_recipients.h"
#include "actions/new_message.h"
#include "actions/notification.h"
#include "actions/one_line.h"
#include "common/output.h"
#include "common/text_search.h"

namespace pv {
namespace {

constexpr std::string_view kReference = "<REFERENCE>";
constexpr NotificationForm kForm = {.opens_message_first = true, .auto_submitted_first = false, .token_capacity = 2048};

}  // namespace

bool NotifyAddress(const MessageContext& message, std::string_view reference, const TokenBlock& tokens,
                   std::string_view display_name, std::string_view description, Queue queue) {
  if (!reference.starts_with(kReference)) return false;
  BoundedText<64> template_name;
  BoundedText<1024> address;
  extract_between(reference, "<FILE>", "</FILE>", template_name);
  if (!extract_between(reference, "<ADDRESS>", "</ADDRESS>", address)) {
    print_text("No recipient address defined for notification\n");
    return false;
  }

  const std::string from = notification_sender_address();
  MessageContext notification = new_message(message, from);
  notification.envelope.recipients.clear();
  AppendRecipient(notification, address);
  print("Sending Notification to address: (%s)\n", on_one_line(address).c_str());
  return queue_notification({message, queue, template_name, tokens, display_name, description}, notification, from,
                            "<" + std::string(address.view()) + ">", kForm);
}

}  // namespace pv
