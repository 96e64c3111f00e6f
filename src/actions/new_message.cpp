#include "actions/new_message.h"

#include "actions/one_line.h"
#include "common/files.h"
#include "common/registry_access.h"

namespace pv {
namespace {

std::string address_setting(const char* key_path, const char* name) {
  BoundedText<1024> address;
  reg_read_string(key_path, name, address);
  return on_one_line(address);
}

}  // namespace

std::string notification_sender_address() {
  return address_setting(kSmtpKey, "Bad Mail Notification Sender Address");
}

std::string forward_sender_address() {
  std::string address = address_setting(kAgentKey, "Forward Sender Address");
  return address.empty() ? notification_sender_address() : address;
}

MessageContext new_message(const MessageContext& filtered, std::string_view sender_address) {
  MessageContext message = filtered;
  copy_bounded(message.message_id, new_message_file_name());
  copy_bounded(message.envelope.sender, "[SMTP:" + std::string(sender_address) + "]");
  copy_bounded(message.envelope.status, "Undelivered");
  return message;
}

}  // namespace pv
