// The failures that tests ask for.
#pragma once

#include "platform/file.h"

namespace pv::platform {

// Whether a test wants this operation to fail; errno is then "no space left on device". Every operation asks before it
// touches the system.
bool fails_for_test(FileOperation operation);

}  // namespace pv::platform
