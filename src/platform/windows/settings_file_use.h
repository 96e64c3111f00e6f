// The system replaces no file that is open. So that the threads of one process, which read the settings file again and
// again while it changes, do not keep a writer among them waiting, they open or replace it one at a time.
#pragma once

#include <windows.h>

namespace pv::platform {

class SettingsFileUse {
 public:
  SettingsFileUse();
  ~SettingsFileUse();
  SettingsFileUse(const SettingsFileUse&) = delete;
  SettingsFileUse& operator=(const SettingsFileUse&) = delete;
};

}  // namespace pv::platform
