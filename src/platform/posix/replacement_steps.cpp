#include "platform/replacement_steps.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/file_faults.h"
#include "platform/last_error.h"
#include "platform/path_parts.h"
#include "platform/paths.h"
#include "platform/posix/descriptor.h"

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

// Nobody else's file or link is ever written through: the temporary file is always a new one.
Descriptor create_anew(const std::string& path, mode_t mode) {
  Descriptor file = open_output_with(path, O_EXCL | O_NOFOLLOW, mode);
  if (file.is_open() || last_system_error() != kExistsError) return file;
  if (fails_for_test(FileOperation::kRemove) || ::unlink(path.c_str()) != 0) return {};
  return open_output_with(path, O_EXCL | O_NOFOLLOW, mode);
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

ReplacementPaths replacement_paths(std::string_view target, std::string_view temporary, TargetName name) {
  ReplacementPaths paths;
  paths.target = name == TargetName::kAnyCase ? creatable_path(target) : path_in_existing_directory(target);
  paths.temporary = path_in_existing_directory(temporary);
  if (!is_link(paths.target)) return paths;
  // A rename works within one file system only, so the temporary file goes where the real target is.
  paths.target = behind_links(paths.target);
  paths.temporary = paths.target.substr(0, paths.target.size() - last_component(paths.target).size());
  paths.temporary += last_component(temporary);
  return paths;
}

Descriptor create_temporary(const ReplacementPaths& paths) {
  struct stat old;
  const bool exists = ::stat(paths.target.c_str(), &old) == 0;
  if (exists && !S_ISREG(old.st_mode)) {
    errno = EINVAL;
    return {};
  }
  Descriptor file = create_anew(paths.temporary, exists ? S_IRUSR | S_IWUSR : 0666);
  if (file.is_open() && exists && !take_over_rights(file, old)) {
    remove_temporary(paths.temporary);
    return {};
  }
  return file;
}

bool put_in_place(const ReplacementPaths& paths) {
  return !fails_for_test(FileOperation::kRename) && std::rename(paths.temporary.c_str(), paths.target.c_str()) == 0;
}

void remove_temporary(const std::string& path) {
  const KeptSystemError kept;
  if (!fails_for_test(FileOperation::kRemove)) ::unlink(path.c_str());
}

}  // namespace pv::platform
