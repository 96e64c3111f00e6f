#include "platform/directory_names.h"

#include <dirent.h>
#include <sys/stat.h>

#include "platform/last_error.h"
#include "platform/path_parts.h"
#include "platform/paths.h"

namespace pv::platform {
namespace {

DirectoryEntry described(std::string_view name, const struct stat& status) {
  const bool is_directory = S_ISDIR(status.st_mode);
  return {std::string(name), is_directory, is_directory ? 0 : static_cast<std::uint64_t>(status.st_size)};
}

}  // namespace

struct DirectoryNames::State {
  DIR* stream;
  const char* name = nullptr;
};

DirectoryNames::DirectoryNames(const std::string& directory)
    : state_(new State{::opendir(directory.empty() ? "." : directory.c_str())}) {}

DirectoryNames::~DirectoryNames() {
  const KeptSystemError kept;
  if (is_open()) ::closedir(state_->stream);
}

bool DirectoryNames::is_open() const {
  return state_->stream != nullptr;
}

const char* DirectoryNames::next() {
  if (!is_open()) return nullptr;
  // The stream belongs to this object alone, so another thread cannot change what readdir() returned.
  while (const dirent* entry = ::readdir(state_->stream)) {  // NOLINT(concurrency-mt-unsafe)
    const std::string_view name = entry->d_name;
    if (name != "." && name != "..") return state_->name = entry->d_name;
  }
  return nullptr;
}

std::optional<DirectoryEntry> DirectoryNames::describe() const {
  struct stat status;
  if (::fstatat(::dirfd(state_->stream), state_->name, &status, 0) != 0) return std::nullopt;
  return described(state_->name, status);
}

std::optional<DirectoryEntry> entry_at(std::string_view path) {
  struct stat status;
  const std::string as_spelt = system_form(path);
  if (::stat(as_spelt.c_str(), &status) == 0) return described(last_component(as_spelt), status);
  const auto found = path_in_another_case(as_spelt);
  if (!found || ::stat(found->c_str(), &status) != 0) return std::nullopt;
  return described(last_component(*found), status);
}

bool make_directory(const std::string& path) {
  return ::mkdir(path.c_str(), 0777) == 0;
}

}  // namespace pv::platform
