#include "platform/posix/settings_update.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "platform/posix/descriptor.h"
#include "platform/posix/settings_bytes.h"

namespace pv::platform {
namespace {

constexpr std::chrono::seconds kLockLimit{5};
constexpr std::chrono::milliseconds kLockPause{1};
constexpr int kMaxRounds = 5;  // how often an edit from outside makes us start again
constexpr int kMaxLinks = 40;  // the kernel's own limit

// The file at the end of the symbolic links, which need not exist yet: the links are to stay.
std::string behind_links(std::string path) {
  for (int i = 0; i < kMaxLinks; ++i) {
    std::array<char, PATH_MAX> target;
    const ssize_t size = ::readlink(path.c_str(), target.data(), target.size());
    if (size <= 0 || size == static_cast<ssize_t>(target.size())) return path;
    // A relative target begins at the link's directory.
    if (target[0] == '/') path.clear();
    path.resize(path.rfind('/') + 1);
    path.append(target.data(), static_cast<std::size_t>(size));
  }
  return path;
}

// Rights last, because a change of owner takes some away. Without the permission to give a file away it stays ours:
// refusing the write would leave, say, a reload request standing for ever.
bool take_over_rights(const Descriptor& file, const SettingsBytes& old) {
  if (::fchown(file.number(), old.owner, old.group) != 0) {
    const int group_kept = ::fchown(file.number(), static_cast<uid_t>(-1), old.group);
    static_cast<void>(group_kept);
  }
  return ::fchmod(file.number(), old.rights) == 0;
}

// Held from a successful acquire() to the end of the object.
class UpdateLock {
 public:
  UpdateLock() = default;
  UpdateLock(const UpdateLock&) = delete;
  UpdateLock& operator=(const UpdateLock&) = delete;
  ~UpdateLock() {
    // Not left to the closing: a process just being started may hold a copy of the descriptor for a moment.
    if (file_.is_open()) ::flock(file_.number(), LOCK_UN);
  }

  bool acquire(const std::string& settings_path) { return open(settings_path) && wait(); }

 private:
  // Whoever may read the settings may lock them, under whatever user an administrator's tool made the lock file.
  bool open(const std::string& settings_path) {
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    const std::string path = settings_path + ".lock";
    file_ = Descriptor(::open(path.c_str(), kFlags));
    if (file_.is_open() || errno != ENOENT) return file_.is_open();
    SettingsBytes settings;
    struct stat status;
    if (::stat(settings_path.c_str(), &status) == 0) {
      settings.rights = status.st_mode & 0666;
      settings.owner = status.st_uid;
      settings.group = status.st_gid;
    }
    file_ = Descriptor(::open(path.c_str(), kFlags | O_CREAT, settings.rights));
    if (!file_.is_open()) return false;
    const bool shared = take_over_rights(file_, settings);
    static_cast<void>(shared);  // somebody else's new lock file is as good
    return true;
  }

  // The system has no wait for a file lock that ends by itself but by a signal, and signals belong to the program that
  // loaded us; so we ask again and again. A write holds the lock for some milliseconds.
  bool wait() const {
    const auto deadline = std::chrono::steady_clock::now() + kLockLimit;
    while (::flock(file_.number(), LOCK_EX | LOCK_NB) != 0) {
      if (errno != EWOULDBLOCK && errno != EINTR) return false;
      if (std::chrono::steady_clock::now() >= deadline) return false;
      std::this_thread::sleep_for(kLockPause);
    }
    return true;
  }

  Descriptor file_;
};

// The new file beside the old one. Removed at the end of the object unless it took the old one's place.
class NewFile {
 public:
  explicit NewFile(const std::string& target) : path_(target + ".XXXXXX"), file_(::mkostemp(path_.data(), O_CLOEXEC)) {
    if (!file_.is_open()) path_.clear();
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    if (!path_.empty()) ::unlink(path_.c_str());
  }

  bool write(std::string_view bytes, const SettingsBytes& old) {
    if (!file_.is_open() || !write_all(file_.number(), bytes) || !take_over_rights(file_, old)) return false;
    return ::fsync(file_.number()) == 0 && ::close(file_.release()) == 0;
  }

  bool replace(const std::string& target) {
    if (::rename(path_.c_str(), target.c_str()) != 0) return false;
    path_.clear();
    return true;
  }

 private:
  std::string path_;
  Descriptor file_;
};

enum class Round { kDone, kFailed, kAgain };

Round update_once(const std::string& target, std::string_view key_path, std::string_view name,
                  const SettingValue& value) {
  const SettingsBytes old = read_settings_bytes(target.c_str());
  if (old.outcome != SettingsRead::kRead && old.outcome != SettingsRead::kMissing) return Round::kFailed;
  const std::string changed = with_setting(old.bytes, key_path, name, value);
  if (changed == old.bytes) {
    // There already, or nothing that such a file can hold.
    return parse_settings(changed).find(key_path, name) != nullptr ? Round::kDone : Round::kFailed;
  }
  if (changed.size() > kMaxSettingsBytes) return Round::kFailed;
  NewFile file(target);
  if (!file.write(changed, old)) return Round::kFailed;
  if (settings_identity(target.c_str()) != old.identity) return Round::kAgain;
  return file.replace(target) ? Round::kDone : Round::kFailed;
}

}  // namespace

bool update_settings_file(const std::string& path, std::string_view key_path, std::string_view name,
                          const SettingValue& value) {
  if (path.empty()) return false;
  const std::string target = behind_links(path);
  UpdateLock lock;
  if (!lock.acquire(target)) return false;
  for (int i = 0; i < kMaxRounds; ++i) {
    const Round round = update_once(target, key_path, name, value);
    if (round != Round::kAgain) return round == Round::kDone;
  }
  return false;
}

}  // namespace pv::platform
