#include "actions/prefix_subject_in_mailbox.h"

#include <optional>
#include <string>

#include "actions/mailbox_of_rules.h"
#include "actions/one_line.h"
#include "actions/subject_prefix.h"
#include "platform/directory.h"
#include "platform/paths.h"
#include "store/store_paths.h"

namespace pv {
namespace {

std::optional<std::string> directory_of(const MessageContext& message) {
  const std::string_view account = message.envelope.account;
  const std::string_view mailbox = mailbox_of_rules(message);
  if (message.store_folder.empty()) return mailbox_path(account, mailbox);
  return mailbox_folder_path(account, mailbox, message.store_folder);
}

}  // namespace

void PrefixSubjectInMailbox(const MessageContext& message, std::string_view prefix) {
  const std::optional<std::string> directory = directory_of(message);
  if (!directory) return;
  [[maybe_unused]] const bool created = platform::create_directory(*directory);  // mostly it is there already
  const std::string path = platform::join_path({*directory, message.message_id});
  InsertSubjectPrefix(on_one_line(prefix), path, path);
}

}  // namespace pv
