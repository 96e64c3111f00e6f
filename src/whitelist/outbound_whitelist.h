// The outbound connection whitelist: marker files, one for each whitelisted address, of the server, a postoffice or a
// mailbox. Their content does not matter.
//
//     <configuration directory>/Connections/Whitelist/192.0.2.7.tab
//     <configuration directory>/Postoffices/<postoffice>/Connections/Whitelist/fe80--1.tab
//     <configuration directory>/Postoffices/<postoffice>/Mailboxes/<mailbox>/Connections/Whitelist/192.0.2.tab
//
// The configuration directory is the one of start-up; when it is empty, the paths are relative to the current one.
#pragma once

#include <string_view>

#include "common/bounded_text.h"

namespace pv {

// Whether the whitelist that applies holds the address: the mailbox's when both names are given, the postoffice's when
// only that is, else the server's. False when the feature is switched off. With "Whitelist Outbound IPAddress Mode" N
// above 0 the first N dotted parts name the file, and an address that has not four parts has the file ".tab".
//
// False also for what would name another file than its own: a name that holds a separator, a wildcard or a NUL, a
// postoffice or mailbox "." or "..", an address name of more than 65 bytes, a path below the configuration directory of
// more than 255, a whole path of more than 511.
//
// Asked for the server's list, it makes the directories Connections and Connections/Spam. Any thread.
bool IsOutboundWhiteListed(std::string_view address, std::string_view postoffice, std::string_view mailbox);

// Joins a name to a directory with a separator, unless the directory ends in one; an empty directory stays empty. What
// does not fit is cut, and then the result is false.
bool append_path(BoundedText<512>& directory, std::string_view name);

}  // namespace pv
