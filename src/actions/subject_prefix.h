// Puts a prefix before the subject of a message.
//
// Failure policy: a message that cannot be read or has no subject line stays as it is. The new version is written
// beside the target ("_<file name>") and takes its place when it is complete; on any error the target keeps its old
// bytes.
#pragma once

#include <string_view>

#include "queue/message_context.h"

namespace pv {

// Inserts the prefix, unchanged, before the text of the first "Subject:" header and writes the result to `target`,
// which may be the source. Nothing is written when the subject line holds the prefix already (in any case). Prints a
// line when the source cannot be opened. Files of 2 GiB and more are left alone.
void InsertSubjectPrefix(std::string_view prefix, std::string_view source, std::string_view target);

// The same for a queued message; a CR, LF or NUL in the prefix becomes a blank. Always true, as the action counts as
// carried out whether or not there was a subject to mark.
bool AddSubjectPrefix(const MessageContext& message, std::string_view prefix, Queue queue);

}  // namespace pv
