#include "platform/directory_names.h"

#include <windows.h>

#include "platform/last_error.h"
#include "platform/path_parts.h"
#include "platform/paths.h"

namespace pv::platform {
namespace {

DirectoryEntry described(const char* name, DWORD attributes, DWORD size_high, DWORD size_low) {
  const bool is_directory = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const std::uint64_t size = static_cast<std::uint64_t>(size_high) << 32 | size_low;
  return {name, is_directory, is_directory ? 0 : size};
}

bool is_link(const WIN32_FIND_DATAA& found) {
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
         (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
}

// Of what the link leads to; nullopt when that is nowhere.
std::optional<DirectoryEntry> behind_link(const std::string& path, const char* name) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = ::CreateFileA(path.c_str(), FILE_READ_ATTRIBUTES, kShared, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  BY_HANDLE_FILE_INFORMATION status;
  const bool known = ::GetFileInformationByHandle(file, &status) != 0;
  const KeptSystemError kept;
  ::CloseHandle(file);
  if (!known) return std::nullopt;
  return described(name, status.dwFileAttributes, status.nFileSizeHigh, status.nFileSizeLow);
}

// `directory` is empty or ends in a separator.
std::optional<DirectoryEntry> described(const std::string& directory, const WIN32_FIND_DATAA& found) {
  if (is_link(found)) return behind_link(directory + found.cFileName, found.cFileName);
  return described(found.cFileName, found.dwFileAttributes, found.nFileSizeHigh, found.nFileSizeLow);
}

// As a beginning for the names in it.
std::string as_prefix(const std::string& directory) {
  return last_component(directory).empty() ? directory : directory + kPathSeparator;
}

}  // namespace

struct DirectoryNames::State {
  explicit State(const std::string& directory) : prefix(as_prefix(directory)) {
    search = ::FindFirstFileA((prefix + "*").c_str(), &found);
    // A drive's root has no "." and "..", so that it can be really empty.
    is_open = search != INVALID_HANDLE_VALUE || ::GetLastError() == ERROR_FILE_NOT_FOUND;
  }
  ~State() {
    const KeptSystemError kept;
    if (search != INVALID_HANDLE_VALUE) ::FindClose(search);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  // The search gives its first entry with its beginning.
  bool advance() {
    if (search == INVALID_HANDLE_VALUE) return false;
    if (started) return ::FindNextFileA(search, &found) != 0;
    return started = true;
  }

  std::string prefix;
  WIN32_FIND_DATAA found{};
  HANDLE search = INVALID_HANDLE_VALUE;
  bool is_open = false;
  bool started = false;
};

DirectoryNames::DirectoryNames(const std::string& directory) : state_(std::make_unique<State>(directory)) {}

DirectoryNames::~DirectoryNames() = default;

bool DirectoryNames::is_open() const {
  return state_->is_open;
}

const char* DirectoryNames::next() {
  while (state_->advance()) {
    const std::string_view name = state_->found.cFileName;
    if (name != "." && name != "..") return state_->found.cFileName;
  }
  return nullptr;
}

std::optional<DirectoryEntry> DirectoryNames::describe() const {
  return described(state_->prefix, state_->found);
}

std::optional<DirectoryEntry> entry_at(std::string_view path) {
  // The system has more wildcards than '*' and '?'. No name may hold them.
  if (path.find_first_of("*?<>\"") != std::string_view::npos) return std::nullopt;
  const auto form = existing_path(path);
  if (!form) return std::nullopt;
  WIN32_FIND_DATAA found;
  const HANDLE search = ::FindFirstFileA(form->c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return std::nullopt;
  ::FindClose(search);
  return described(form->substr(0, form->size() - last_component(*form).size()), found);
}

bool make_directory(const std::string& path) {
  return ::CreateDirectoryA(path.c_str(), nullptr) != 0;
}

}  // namespace pv::platform
