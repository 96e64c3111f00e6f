// Changing values of the settings file on disk.
//
// Failure: the file keeps its old bytes until the new ones are complete and on the disk; on any error the temporary
// file is removed and the result is false. Writers, of this and other processes, exclude each other by a lock on
// "<path>.lock", which the system gives up when its holder dies; the lock file stays. An editor knows nothing of that
// lock: what it saved while we worked is read again and kept, but a save in the instant before our rename is lost.
#pragma once

#include <chrono>
#include <span>
#include <string>
#include <string_view>

#include "platform/settings_bytes.h"
#include "platform/settings_file.h"

namespace pv::platform {

struct SettingEdit {
  std::string_view key_path;
  std::string_view name;
  SettingValue value;
};

struct SettingsWrite {
  std::span<const SettingEdit> edits;      // written in one replacement of the file
  std::chrono::milliseconds lock_limit{};  // how long to wait for other writers
  FileIdentity finished;  // a state of the file that nobody was in the middle of writing, if one is known
};

struct SettingsWritten {
  bool held = false;      // the file holds the values, whether it had to be written or not
  FileIdentity identity;  // of the file that took the old one's place; none when nobody can say
  std::string bytes;      // what it holds, when it has an identity
};

// A missing file is created, a missing directory is not. A file that cannot be read is not replaced.
[[nodiscard]] SettingsWritten update_settings_file(const std::string& path, const SettingsWrite& write);

}  // namespace pv::platform
