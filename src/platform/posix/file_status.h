// The identity of a file in the system's own terms.
#pragma once

#include <sys/stat.h>

#include "platform/file_identity.h"

namespace pv::platform {

FileIdentity identity_of(const struct stat& status);

}  // namespace pv::platform
