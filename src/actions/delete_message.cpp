#include "actions/delete_message.h"

#include "platform/file.h"
#include "queue/queue_paths.h"

namespace pv {

bool DeleteQueuedMessage(const MessageContext& message, Queue queue) {
  return platform::remove_file(command_file_path(message, queue)) &&
         platform::remove_file(message_file_path(message, queue));
}

}  // namespace pv
