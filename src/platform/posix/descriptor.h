// What only this system's code does with descriptors.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/descriptor.h"

namespace pv::platform {

// open_output() with O_CREAT and the given flags.
Descriptor open_output_with(const std::string& path, int flags, mode_t mode);

[[nodiscard]] bool write_all(int number, std::string_view bytes);

// The same for a caller that needs to know how many bytes a failed write left in the file.
[[nodiscard]] std::size_t write_most(int number, std::string_view bytes);

}  // namespace pv::platform
