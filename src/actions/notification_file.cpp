#include "actions/notification_file.h"

#include "queue/queue_paths.h"

namespace pv {

NotificationFile::NotificationFile(const MessageContext& notification)
    : file_(message_file_path(notification, Queue::kInbound),
            temporary_message_file_path(notification, Queue::kInbound), platform::FileMode::kText,
            platform::TargetName::kAsSpelt) {}

bool NotificationFile::write(std::string_view text) {
  if (!text.empty()) at_line_start_ = text.back() == '\n';
  return file_.write(text);
}

}  // namespace pv
