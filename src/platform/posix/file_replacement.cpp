// Replacing a file in one step. Failure: until the rename the target keeps its old bytes, and the temporary file is
// removed. A full disk shows in write or close, before the rename; a kill leaves the old file or the new one. Not
// handled: a power cut, which is left to the file system's order of data and rename (every message would wait for the
// disk several times otherwise), and two writers with the same temporary file.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

#include "platform/file.h"
#include "platform/paths.h"
#include "platform/posix/buffered_output.h"
#include "platform/posix/file_faults.h"
#include "platform/posix/kept_errno.h"
#include "platform/posix/path_parts.h"

namespace pv::platform {
namespace {

constexpr mode_t kAccessRights = 07777;

// A link stays one: what it points to is replaced.
std::string behind_links(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real ? real.get() : path;
}

bool is_link(const std::string& path) {
  struct stat status;
  return ::lstat(path.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
}

void remove_temporary(const std::string& path) {
  const KeptErrno kept;
  if (!fails_for_test(FileOperation::kRemove)) ::unlink(path.c_str());
}

// Nobody else's file or link is ever written through: the temporary file is always a new one.
Descriptor create_anew(const std::string& path, mode_t mode) {
  Descriptor file = open_output(path, O_EXCL | O_NOFOLLOW, mode);
  if (file.is_open() || errno != EEXIST) return file;
  if (fails_for_test(FileOperation::kRemove) || ::unlink(path.c_str()) != 0) return {};
  return open_output(path, O_EXCL | O_NOFOLLOW, mode);
}

// The owner can be given away only by root, a group only by its members; the rights matter more than that. They come
// last, because a change of owner takes some of them away.
bool take_over_rights(const Descriptor& file, const struct stat& old) {
  if (::fchown(file.number(), old.st_uid, old.st_gid) != 0) {
    const int group_kept = ::fchown(file.number(), static_cast<uid_t>(-1), old.st_gid);
    static_cast<void>(group_kept);
  }
  return ::fchmod(file.number(), old.st_mode & kAccessRights) == 0;
}

}  // namespace

struct FileReplacement::State {
  std::string target;
  std::string temporary;
  std::optional<BufferedOutput> output;  // none once committed, or when nothing could be opened

  void resolve(std::string_view target_path, std::string_view temporary_path, TargetName name);
  void open(FileMode mode);
  void give_up();
};

void FileReplacement::State::resolve(std::string_view target_path, std::string_view temporary_path, TargetName name) {
  target = name == TargetName::kAnyCase ? creatable_path(target_path) : path_in_existing_directory(target_path);
  temporary = path_in_existing_directory(temporary_path);
  if (!is_link(target)) return;
  // A rename works within one file system only, so the temporary file goes where the real target is.
  target = behind_links(target);
  temporary = target.substr(0, target.size() - last_component(target).size());
  temporary += last_component(temporary_path);
}

void FileReplacement::State::open(FileMode mode) {
  struct stat old;
  const bool exists = ::stat(target.c_str(), &old) == 0;
  if (target == temporary || (exists && !S_ISREG(old.st_mode))) {
    errno = EINVAL;
    return;
  }
  Descriptor file = create_anew(temporary, exists ? S_IRUSR | S_IWUSR : 0666);
  if (!file.is_open()) return;
  if (exists && !take_over_rights(file, old)) return remove_temporary(temporary);
  output.emplace(std::move(file), mode);
}

void FileReplacement::State::give_up() {
  if (!output) return;
  output.reset();
  remove_temporary(temporary);
}

FileReplacement::FileReplacement(std::string_view target, std::string_view temporary, FileMode mode, TargetName name)
    : state_(std::make_unique<State>()) {
  state_->resolve(target, temporary, name);
  state_->open(mode);
}

FileReplacement::~FileReplacement() {
  state_->give_up();
}

bool FileReplacement::is_open() const {
  return state_->output.has_value();
}

bool FileReplacement::write(std::string_view bytes) {
  if (state_->output) return state_->output->write(bytes);
  errno = EBADF;
  return false;
}

bool FileReplacement::commit() {
  State& state = *state_;
  if (!state.output) return false;
  const bool written = state.output->close();
  const bool renamed = written && !fails_for_test(FileOperation::kRename) &&
                       std::rename(state.temporary.c_str(), state.target.c_str()) == 0;
  if (renamed) {
    state.output.reset();
  } else {
    state.give_up();
  }
  return renamed;
}

}  // namespace pv::platform
