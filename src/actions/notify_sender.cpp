#include "actions/notify_sender.h"

#include <string>

#include "actions/new_message.h"
#include "actions/notification.h"
#include "actions/one_line.h"
#include "common/output.h"
#include "queue/addresses.h"

namespace pv {
namespace {

constexpr NotificationForm kForm = {.opens_message_first = true, .auto_submitted_first = true, .token_capacity = 1024};

std::string to_header(std::string_view sender) {
  BoundedText<1024> address;
  BareSenderAddress(sender, address);
  return "<" + std::string(address.view()) + ">";
}

}  // namespace

bool NotifySender(const MessageContext& message, std::string_view template_name, const TokenBlock& tokens,
                  std::string_view display_name, std::string_view description, Queue queue) {
  const std::string from = notification_sender_address();
  const std::string_view sender = message.envelope.sender;
  MessageContext notification = new_message(message, from);
  notification.envelope.recipients = sender;
  print("Sending Notification to Sender: (%s)\n", on_one_line(sender).c_str());
  return queue_notification({message, queue, template_name, tokens, display_name, description}, notification, from,
                            to_header(sender), kForm);
}

}  // namespace pv
