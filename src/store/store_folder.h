// Folders of the message store, and the flag files by which its other clients learn of changes:
//
//     _FOLDER.DTY    in a directory below which a folder was created
//     _CHANGE.DTY    in a folder whose contents changed
//
// A flag says all by being there; it holds a fixed text. One that cannot be written is passed over: the message is in
// its folder all the same, and clients see it when they next look for themselves.
#pragma once

#include <cstdint>
#include <string_view>

namespace pv {

// Creates a directory; its parent must exist. Inside one of a postoffice's trees (MAILROOT, PUBROOT, FILEROOT) the
// parent is flagged, also when the directory was there before or could not be created. True when it was created.
bool CreateStoreFolder(std::string_view path);

// Flags a mailbox's folder as changed, and prints a line. The action, the item's name and both switches are for store
// clients that want to know more; nothing is done with them here. Always 1.
std::int32_t MarkFolderChanged(std::string_view postoffice, std::string_view mailbox, std::string_view folder,
                               std::string_view action, std::string_view item, int first_switch, int second_switch);

}  // namespace pv
