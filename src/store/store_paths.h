// Where the message store keeps the mailboxes:
//
//     <Mail Root>/<postoffice>/MAILROOT/<mailbox>/<folder>
//     <Mail Root>/<postoffice>/PUBROOT    <Mail Root>/<postoffice>/FILEROOT    public folders and files
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pv {

// A postoffice's root directory. nullopt when the name is not that of one directory (empty, "..", with a separator in
// it), and when the setting "Mail Root" is empty: the path would lie outside the store.
std::optional<std::string> PostofficeRoot(std::string_view postoffice);

// A mailbox's own directory; nullopt as above.
std::optional<std::string> mailbox_path(std::string_view postoffice, std::string_view mailbox);

// A folder of a mailbox; its name may hold several levels, with either separator. nullopt also for an empty name and
// for one with a level such as "..": whoever writes a mailbox's rules must not leave the mailbox with them.
std::optional<std::string> mailbox_folder_path(std::string_view postoffice, std::string_view mailbox,
                                               std::string_view folder);

}  // namespace pv
