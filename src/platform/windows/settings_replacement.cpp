#include "platform/settings_replacement.h"

#include <array>
#include <vector>

#include "platform/file.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/settings_file_use.h"

namespace pv::platform {
namespace {

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kLongestFinalPath = 4096;  // bytes
// The system replaces no file that somebody has open, so we ask again: our own readers have it open for microseconds,
// an editor or a virus scanner for little more. Moving the old file aside first would work at once, but leave a reader
// in between without settings.
constexpr ULONGLONG kReplaceLimit_ms = 2000;
constexpr DWORD kReplacePause_ms = 1;

bool may_be_free_soon(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED;
}

bool is_read_only(const std::string& path) {
  const DWORD attributes = ::GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

// The last error is that of the attempt.
bool replace_at_once(const std::string& from, const std::string& to) {
  const SettingsFileUse use;
  return ::MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

// The new file has the rights of its directory; those that an administrator gave the old one alone go over to it. A
// system or disk without such rights gives none to take over.
void take_over_rights(const std::string& from, const std::string& to) {
  DWORD size = 0;
  ::GetFileSecurityA(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  if (size == 0) return;
  std::vector<std::byte> rights(size);
  if (!::GetFileSecurityA(from.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size)) return;
  ::SetFileSecurityA(to.c_str(), DACL_SECURITY_INFORMATION, rights.data());
}

bool write_all(const FileHandle& file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) return false;
    if (written == 0) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

}  // namespace

std::string behind_links(const std::string& path) {
  const DWORD attributes = ::GetFileAttributesA(path.c_str());
  const bool is_link = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (!is_link) return path;
  const FileHandle file(::CreateFileA(path.c_str(), FILE_READ_ATTRIBUTES, kShared, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!file.is_open()) return path;
  std::array<char, kLongestFinalPath> found;
  const DWORD size = ::GetFinalPathNameByHandleA(file.get(), found.data(), kLongestFinalPath, FILE_NAME_NORMALIZED);
  return size == 0 || size >= kLongestFinalPath ? path : std::string(found.data(), size);
}

struct SettingsLock::State {
  FileHandle file;
};

SettingsLock::SettingsLock() : state_(std::make_unique<State>()) {}

// Closing gives the lock up.
SettingsLock::~SettingsLock() = default;

bool SettingsLock::open(const std::string& settings_path) {
  const std::string path = settings_path + ".lock";
  state_->file.reset(
      ::CreateFileA(path.c_str(), GENERIC_READ, kShared, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  return state_->file.is_open();
}

SettingsLock::Outcome SettingsLock::try_lock() {
  OVERLAPPED from_start{};
  constexpr DWORD kHow = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
  if (::LockFileEx(state_->file.get(), kHow, 0, 1, 0, &from_start)) return Outcome::kLocked;
  return ::GetLastError() == ERROR_LOCK_VIOLATION ? Outcome::kBusy : Outcome::kFailed;
}

struct NewSettingsFile::State {
  explicit State(const std::string& name) : target(name) {
    if (is_read_only(target)) return;  // it could not be replaced, however long we wait
    path = temporary_beside(target);
    file.reset(::CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.is_open()) path.clear();
  }

  std::string target;
  std::string path;  // empty when there is no file to remove
  FileHandle file;
};

NewSettingsFile::NewSettingsFile(const std::string& target) : state_(std::make_unique<State>(target)) {}

NewSettingsFile::~NewSettingsFile() {
  state_->file.close();
  if (!state_->path.empty()) ::DeleteFileA(state_->path.c_str());
}

bool NewSettingsFile::write(std::string_view bytes) {
  FileHandle& file = state_->file;
  if (!file.is_open() || !write_all(file, bytes)) return false;
  take_over_rights(state_->target, state_->path);  // before the closing lets others open it
  return ::FlushFileBuffers(file.get()) && file.close();
}

FileIdentity NewSettingsFile::identity() const {
  return settings_identity(state_->path.c_str());
}

bool NewSettingsFile::replace_target() {
  const ULONGLONG begin = ::GetTickCount64();
  while (!replace_at_once(state_->path, state_->target)) {
    if (!may_be_free_soon(::GetLastError()) || ::GetTickCount64() - begin > kReplaceLimit_ms) return false;
    ::Sleep(kReplacePause_ms);
  }
  state_->path.clear();
  return true;
}

}  // namespace pv::platform
