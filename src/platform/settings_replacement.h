// What replacing the settings file needs of the system: a lock that other processes share, and a new file that takes
// the old one's place in one step.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/settings_bytes.h"

namespace pv::platform {

// The file at the end of the symbolic links, which need not exist yet: the links are to stay.
std::string behind_links(const std::string& path);

// An exclusive lock on the file "<settings path>.lock", which is made when it is missing and stays. The system gives
// the lock up when its holder dies; the end of the object gives it up too.
class SettingsLock {
 public:
  enum class Outcome { kLocked, kBusy, kFailed };

  SettingsLock();
  ~SettingsLock();
  SettingsLock(const SettingsLock&) = delete;
  SettingsLock& operator=(const SettingsLock&) = delete;

  [[nodiscard]] bool open(const std::string& settings_path);
  // Does not wait: the systems have no wait for such a lock that ends by itself.
  Outcome try_lock();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// A new file beside `target`, under a name that no other has. Removed at the end of the object unless it took the
// target's place.
class NewSettingsFile {
 public:
  explicit NewSettingsFile(const std::string& target);
  ~NewSettingsFile();
  NewSettingsFile(const NewSettingsFile&) = delete;
  NewSettingsFile& operator=(const NewSettingsFile&) = delete;

  // The whole content, once; it is on the disk when this gave true. The file gets the target's access rights.
  [[nodiscard]] bool write(std::string_view bytes);
  // Of the new file, while it stands beside the target.
  FileIdentity identity() const;
  [[nodiscard]] bool replace_target();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pv::platform
