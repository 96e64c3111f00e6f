// Copies a message into a folder of a mailbox.
//
// Failure policy: the queued message stays in place whatever happens; the copy is complete or not there, and replaces
// an earlier one of the same name in one step.
#pragma once

#include <string_view>

#include "queue/message_context.h"

namespace pv {

// Copies the message file of the outgoing queue into the folder (of one level or several) of the mailbox of the
// command file's user in the message's account. The folder is created when only its last level is missing; the store's
// clients are told of it and of the message by flag files (store/store_folder.h). False when the message was not
// copied, also for a folder that would lie outside the mailbox (store/store_paths.h).
[[nodiscard]] bool CopyToMailboxFolder(const MessageContext& message, std::string_view folder);

}  // namespace pv
