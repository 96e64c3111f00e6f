// Names that a directory was found not to hold in any letter case. To find that out again, a directory that has not
// changed need not be read: a filter without an action table asks with every message.
#pragma once

#include <optional>
#include <string_view>

#include "platform/file_identity.h"

namespace pv::platform {

// The directory of a path as it was when the path was found absent; nullopt: it was not, or that is forgotten. Any
// thread.
std::optional<FileIdentity> directory_without(std::string_view path);

// Remembers it, if `directory`, taken before the search, tells this state of it from every later one. At the cost of
// another path when there are many; paths of more than 255 bytes are not remembered. Any thread.
void note_absent(std::string_view path, const FileIdentity& directory);

}  // namespace pv::platform
