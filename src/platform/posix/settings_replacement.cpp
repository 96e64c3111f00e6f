#include "platform/settings_replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include "platform/descriptor.h"

namespace pv::platform {
namespace {

constexpr int kMaxLinks = 40;  // the kernel's own limit
constexpr mode_t kAccessRights = 0777;

// What a file made in the place of another, or beside it, takes over.
struct Rights {
  mode_t mode = 0644;
  uid_t owner = static_cast<uid_t>(-1);
  gid_t group = static_cast<gid_t>(-1);
};

Rights rights_of(const std::string& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) return {};
  return {status.st_mode & kAccessRights, status.st_uid, status.st_gid};
}

// Mode last, because a change of owner takes some rights away. Without the permission to give a file away it stays
// ours: refusing the write would leave, say, a reload request standing for ever.
bool take_over_rights(const Descriptor& file, const Rights& rights) {
  if (::fchown(file.number(), rights.owner, rights.group) != 0) {
    const int group_kept = ::fchown(file.number(), static_cast<uid_t>(-1), rights.group);
    static_cast<void>(group_kept);
  }
  return ::fchmod(file.number(), rights.mode) == 0;
}

// Whoever may read the settings may lock them, under whatever user an administrator's tool made the lock file.
Descriptor open_lock_file(const std::string& settings_path) {
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
  const std::string path = settings_path + ".lock";
  Descriptor file(::open(path.c_str(), kFlags));
  if (file.is_open() || errno != ENOENT) return file;
  Rights rights = rights_of(settings_path);
  rights.mode &= 0666;
  file = Descriptor(::open(path.c_str(), kFlags | O_CREAT, rights.mode));
  if (!file.is_open()) return file;
  const bool shared = take_over_rights(file, rights);
  static_cast<void>(shared);  // somebody else's new lock file is as good
  return file;
}

}  // namespace

std::string behind_links(const std::string& path) {
  std::string found = path;
  for (int i = 0; i < kMaxLinks; ++i) {
    std::array<char, PATH_MAX> target;
    const ssize_t size = ::readlink(found.c_str(), target.data(), target.size());
    if (size <= 0 || size == static_cast<ssize_t>(target.size())) return found;
    // A relative target begins at the link's directory.
    if (target[0] == '/') found.clear();
    found.resize(found.rfind('/') + 1);
    found.append(target.data(), static_cast<std::size_t>(size));
  }
  return found;
}

struct SettingsLock::State {
  Descriptor file;
};

SettingsLock::SettingsLock() : state_(std::make_unique<State>()) {}

SettingsLock::~SettingsLock() {
  // Not left to the closing: a process just being started may hold a copy of the descriptor for a moment.
  if (state_->file.is_open()) ::flock(state_->file.number(), LOCK_UN);
}

bool SettingsLock::open(const std::string& settings_path) {
  state_->file = open_lock_file(settings_path);
  return state_->file.is_open();
}

SettingsLock::Outcome SettingsLock::try_lock() {
  if (::flock(state_->file.number(), LOCK_EX | LOCK_NB) == 0) return Outcome::kLocked;
  return errno == EWOULDBLOCK || errno == EINTR ? Outcome::kBusy : Outcome::kFailed;
}

struct NewSettingsFile::State {
  explicit State(const std::string& name)
      : target(name), path(name + ".XXXXXX"), file(::mkostemp(path.data(), O_CLOEXEC)) {
    if (!file.is_open()) path.clear();
  }

  std::string target;
  std::string path;  // empty when there is no file to remove
  Descriptor file;
};

NewSettingsFile::NewSettingsFile(const std::string& target) : state_(std::make_unique<State>(target)) {}

NewSettingsFile::~NewSettingsFile() {
  if (!state_->path.empty()) ::unlink(state_->path.c_str());
}

bool NewSettingsFile::write(std::string_view bytes) {
  Descriptor& file = state_->file;
  if (!file.is_open() || !write_all(file, bytes)) return false;
  if (!take_over_rights(file, rights_of(state_->target))) return false;
  return ::fsync(file.number()) == 0 && ::close(file.release()) == 0;
}

FileIdentity NewSettingsFile::identity() const {
  return settings_identity(state_->path.c_str());
}

bool NewSettingsFile::replace_target() {
  if (::rename(state_->path.c_str(), state_->target.c_str()) != 0) return false;
  state_->path.clear();
  return true;
}

}  // namespace pv::platform
