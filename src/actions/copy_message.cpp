#include "actions/copy_message.h"

#include <string_view>

#include "platform/file.h"
#include "platform/paths.h"
#include "queue/queue_paths.h"

namespace pv {
namespace {

bool copy_aside(const MessageContext& message, Queue queue, std::string_view directory) {
  if (directory.empty()) return false;  // it would name the root of the file system
  return platform::copy_file(command_file_path(message, queue), platform::join_path({directory, message.message_id})) &&
         platform::copy_file(message_file_path(message, queue),
                             platform::join_path({directory, "Messages", message.message_id}));
}

}  // namespace

bool CopyToQuarantine(const MessageContext& message, Queue queue) {
  return copy_aside(message, queue, message.directories.quarantine);
}

bool CopyToBadMail(const MessageContext& message, Queue queue) {
  return copy_aside(message, queue, message.directories.bad_mail);
}

}  // namespace pv
