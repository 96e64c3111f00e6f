// The identity of a file by its name as the system takes it.
#pragma once

#include "platform/file_identity.h"

namespace pv::platform {

FileIdentity identity_of(const char* path);

}  // namespace pv::platform
