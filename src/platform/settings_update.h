// Changing one value of the settings file on disk.
//
// Failure: the file keeps its old bytes until the new ones are complete and on the disk; on any error the temporary
// file is removed and the result is false. Writers, of this and other processes, exclude each other by a lock on
// "<path>.lock", which the system gives up when its holder dies; the lock file stays. An editor knows nothing of that
// lock: what it saved while we worked is read again and kept, but a save in the instant before our rename is lost.
#pragma once

#include <string>
#include <string_view>

#include "platform/settings_file.h"

namespace pv::platform {

// True when the file holds the value, whether it had to be written or not. Waits up to 5 s for other writers. A missing
// file is created, a missing directory is not. A file that cannot be read is not replaced.
[[nodiscard]] bool update_settings_file(const std::string& path, std::string_view key_path, std::string_view name,
                                        const SettingValue& value);

}  // namespace pv::platform
