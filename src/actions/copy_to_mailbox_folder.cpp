#include "actions/copy_to_mailbox_folder.h"

#include <optional>
#include <string>

#include "actions/mailbox_of_rules.h"
#include "platform/file.h"
#include "platform/paths.h"
#include "queue/queue_paths.h"
#include "store/store_folder.h"
#include "store/store_paths.h"

namespace pv {

bool CopyToMailboxFolder(const MessageContext& message, std::string_view folder) {
  const std::string_view account = message.envelope.account;
  const std::string_view mailbox = mailbox_of_rules(message);
  const std::optional<std::string> directory = mailbox_folder_path(account, mailbox, folder);
  if (!directory) return false;
  CreateStoreFolder(*directory);  // mostly it is there already
  if (!platform::copy_file(message_file_path(message, Queue::kOutgoing),
                           platform::join_path({*directory, message.message_id})))
    return false;
  MarkFolderChanged(account, mailbox, folder, "ADD", message.message_id, 1, 1);
  return true;
}

}  // namespace pv
