#include "platform/posix/directory_names.h"

#include <string_view>

#include "platform/posix/kept_errno.h"

namespace pv::platform {

DirectoryNames::DirectoryNames(const std::string& directory) : stream_(::opendir(directory.c_str())) {}

DirectoryNames::~DirectoryNames() {
  const KeptErrno kept;
  if (stream_ != nullptr) ::closedir(stream_);
}

int DirectoryNames::descriptor() const {
  return stream_ == nullptr ? -1 : ::dirfd(stream_);
}

const char* DirectoryNames::next() {
  if (stream_ == nullptr) return nullptr;
  // The stream belongs to this object alone, so another thread cannot change what readdir() returned.
  while (const dirent* entry = ::readdir(stream_)) {  // NOLINT(concurrency-mt-unsafe)
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return entry->d_name;
  }
  return nullptr;
}

}  // namespace pv::platform
