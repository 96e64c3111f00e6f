// Puts a prefix before the subject of a message that lies in a mailbox.
//
// Failure policy: that of InsertSubjectPrefix (actions/subject_prefix.h). The copy in the queue is never touched.
#pragma once

#include <string_view>

#include "queue/message_context.h"

namespace pv {

// Marks the message's file in the store folder that the context names, which is created when missing; without one, in
// the directory of the user's mailbox itself. Nothing happens when the message is not there, when it has no subject,
// and for a folder that would lie outside the mailbox. A CR, LF or NUL in the prefix becomes a blank.
void PrefixSubjectInMailbox(const MessageContext& message, std::string_view prefix);

}  // namespace pv
