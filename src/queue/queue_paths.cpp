#include "queue/queue_paths.h"

#include <string_view>

#include "platform/paths.h"

namespace pv {

namespace {

constexpr std::string_view kMessagesDirectory = "Messages";

std::string_view queue_directory(Queue queue) {
  return queue == Queue::kInbound ? "Inbound" : "Outgoing";
}

std::string in_messages_directory(const MessageContext& message, Queue queue, std::string_view file_name) {
  return platform::join_path({message.directories.connector_root.view(), message.connector.view(),
                              queue_directory(queue), kMessagesDirectory, file_name});
}

}  // namespace

std::string command_file_path(const MessageContext& message, Queue queue) {
  return platform::join_path({message.directories.connector_root.view(), message.connector.view(),
                              queue_directory(queue), message.message_id.view()});
}

std::string message_file_path(const MessageContext& message, Queue queue) {
  return in_messages_directory(message, queue, message.message_id.view());
}

std::string temporary_message_file_path(const MessageContext& message, Queue queue) {
  return in_messages_directory(message, queue, "_" + std::string(message.message_id.view()));
}

std::string temporary_command_file_path(const MessageContext& message, Queue queue) {
  return in_messages_directory(message, queue, "_" + std::string(message.message_id.view()) + ".cmd");
}

}  // namespace pv
