// The settings file on disk: what tells one state of it from another, and its bytes.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace pv::platform {

// Bytes of a settings file; a larger one is a mistake and not read. A server's own export has some 100 KB.
inline constexpr std::size_t kMaxSettingsBytes = std::size_t{16} << 20;

// Two states of the file are the same when all of this is. The time of change is set by the kernel alone, so a copy or
// an edit that keeps the size and puts back the time of modification shows too.
struct SettingsIdentity {
  bool exists = false;
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  std::int64_t modified_ns = 0;
  std::int64_t changed_ns = 0;

  bool operator==(const SettingsIdentity&) const = default;
};

SettingsIdentity settings_identity(const char* path);

enum class SettingsRead {
  kRead,
  kMissing,
  kUnreadable,  // no permission, no regular file, too large, or a failed read
  kNotNow,      // the system is short of descriptors or memory
};

struct SettingsBytes {
  SettingsRead outcome = SettingsRead::kMissing;
  std::string bytes;          // kRead; else empty
  SettingsIdentity identity;  // as it was before the first byte was read
  // The clock of the file system has moved on since the last change, so that any later one changes the identity.
  bool settled = false;
  // Of the file; what a new file gets when there is none.
  mode_t rights = 0644;
  uid_t owner = static_cast<uid_t>(-1);
  gid_t group = static_cast<gid_t>(-1);
};

SettingsBytes read_settings_bytes(const char* path);

}  // namespace pv::platform
