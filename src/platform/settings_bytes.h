// The settings file on disk: what tells one state of it from another, and its bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace pv::platform {

// Bytes of a settings file; a larger one is a mistake and not read. A server's own export has some 100 KB.
inline constexpr std::size_t kMaxSettingsBytes = std::size_t{16} << 20;

// Two states of the file are the same when all of this is. What a system does not tell about a file that is not open
// is 0 there.
struct SettingsIdentity {
  bool exists = false;
  std::uint64_t volume = 0;
  std::uint64_t file = 0;  // tells the files of a volume apart
  std::uint64_t size = 0;
  std::int64_t modified = 0;  // in the system's ticks
  std::int64_t changed = 0;   // set by the system alone: an edit that keeps the size and puts back `modified` shows too

  bool operator==(const SettingsIdentity&) const = default;
};

SettingsIdentity settings_identity(const char* path);

enum class SettingsRead {
  kRead,
  kMissing,
  kUnreadable,  // no permission, no regular file, too large, or a failed read
  kNotNow,      // the system is short of descriptors or memory, or somebody has the file to himself for a moment
};

struct SettingsBytes {
  SettingsRead outcome = SettingsRead::kMissing;
  std::string bytes;          // kRead; else empty
  SettingsIdentity identity;  // as it was before the first byte was read
  // The clock of the file system has moved on since the last change, so that any later one changes the identity.
  bool settled = false;
};

SettingsBytes read_settings_bytes(const char* path);

}  // namespace pv::platform
