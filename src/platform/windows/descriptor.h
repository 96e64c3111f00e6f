// What only this system's code does with descriptors.
#pragma once

#include <string>

#include "platform/descriptor.h"

namespace pv::platform {

// A file that is not there yet, for writing. `security` is the security descriptor it gets; nullptr: the directory's
// usual one. Asks the fault hook, as open_output() does.
Descriptor create_with_security(const std::string& path, void* security);

// A file for writing and reading that goes away when its last descriptor is closed.
Descriptor create_short_lived(const std::string& path);

// A second descriptor of the same open file; started programs do not inherit it. Not open when `number` is not.
Descriptor duplicate(int number);

}  // namespace pv::platform
