// The system's random source.
#pragma once

#include "platform/guid.h"

namespace pv::platform {

// False when the system gives none, for example in a sandbox; the GUID is then undefined.
[[nodiscard]] bool fill_randomly(Guid& guid);

}  // namespace pv::platform
