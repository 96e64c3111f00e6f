// The settings file on disk: what tells one state of it from another, and its bytes.
#pragma once

#include <cstddef>
#include <string>

#include "platform/file_identity.h"

namespace pv::platform {

// Bytes of a settings file; a larger one is a mistake and not read. A server's own export has some 100 KB.
inline constexpr std::size_t kMaxSettingsBytes = std::size_t{16} << 20;

// By this very path, in the form of the system.
FileIdentity settings_identity(const char* path);

enum class SettingsRead {
  kRead,
  kMissing,
  kUnreadable,  // no permission, no regular file, too large, or a failed read
  kNotNow,      // the system is short of descriptors or memory, or somebody has the file to himself for a moment
};

struct SettingsBytes {
  SettingsRead outcome = SettingsRead::kMissing;
  std::string bytes;      // kRead; else empty
  FileIdentity identity;  // as it was before the first byte was read
  // The clock of the file system has moved on since the last change, so that any later one changes the identity.
  bool settled = false;
};

SettingsBytes read_settings_bytes(const char* path);

}  // namespace pv::platform
