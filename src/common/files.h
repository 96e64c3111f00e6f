// Small questions about files, and names for new queue files.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/bounded_text.h"

namespace pv {

// Whether a directory search for the path, which may hold wildcards, finds an entry. A directory counts.
bool file_exists(std::string_view path);

// The size in bytes of the first entry that a directory search for the path finds; 0 when there is none. A file of
// 2 GiB or more has 2147483647, so that it exceeds every size limit an administrator can set.
std::int32_t file_size(std::string_view path);

// A new GUID as 32 upper-case hexadecimal digits without separators.
BoundedText<33> guid_hex();

// A new queue file name: guid_hex() and ".MAI".
BoundedText<37> new_message_file_name();

}  // namespace pv
