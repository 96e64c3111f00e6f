// Copying a queued message aside, into the server's quarantine or bad-mail directory:
//
//     <directory>/<message id>             the command file
//     <directory>/Messages/<message id>    the message file
//
// Failure policy: the queued message stays in place whatever happens. Earlier copies of the same name are replaced,
// each in one step. When the second file cannot be copied, the first one stays.
#pragma once

#include "queue/message_context.h"

namespace pv {

// True when both files were copied. False also when no directory is configured, and when it or its "Messages" is
// missing: directories are not created.
[[nodiscard]] bool CopyToQuarantine(const MessageContext& message, Queue queue);
[[nodiscard]] bool CopyToBadMail(const MessageContext& message, Queue queue);

}  // namespace pv
