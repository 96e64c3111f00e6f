// The failures that tests ask for.
#pragma once

#include "platform/file.h"

namespace pv::platform {

// Whether a test wants this operation to fail; the last error is then that of the failure it chose. Every operation
// asks before it touches the system.
bool fails_for_test(FileOperation operation);

}  // namespace pv::platform
