#include "actions/notify_recipients.h"

#include <string>

#include "actions/new_message.h"
#include "actions/notification.h"

namespace pv {
namespace {

constexpr NotificationForm kForm = {
    .opens_message_first = false, .auto_submitted_first = false, .token_capacity = 2048};

}  // namespace

bool NotifyRecipients(const MessageContext& message, std::string_view template_name, const TokenBlock& tokens,
                      std::string_view display_name, std::string_view description, Queue queue) {
  const std::string from = notification_sender_address();
  return queue_notification({message, queue, template_name, tokens, display_name, description},
                            new_message(message, from), from, "Undisclosed-Recipients", kForm);
}

}  // namespace pv
