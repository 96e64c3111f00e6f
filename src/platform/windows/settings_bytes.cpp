#include "platform/settings_bytes.h"

#include "platform/windows/file_handle.h"
#include "platform/windows/file_status.h"
#include "platform/windows/settings_file_use.h"

namespace pv::platform {
namespace {

SRWLOCK file_use = SRWLOCK_INIT;

SettingsRead outcome_of_failed_open() {
  switch (::GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_DIRECTORY:
      return SettingsRead::kMissing;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_DELETE_PENDING:
    case ERROR_TOO_MANY_OPEN_FILES:
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
      return SettingsRead::kNotNow;
    default:
      return SettingsRead::kUnreadable;
  }
}

// All bytes up to the end. False on a failure or when there are more than a settings file may have.
bool read_all(const FileHandle& file, std::size_t expected_size, std::string& bytes) {
  std::size_t filled = 0;
  bytes.resize(expected_size + 1);  // one more, so that the end shows without another round
  for (;;) {
    DWORD got = 0;
    const auto room = static_cast<DWORD>(bytes.size() - filled);
    if (!::ReadFile(file.get(), bytes.data() + filled, room, &got, nullptr)) return false;
    filled += got;
    if (filled > kMaxSettingsBytes) return false;
    if (got == 0) break;
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
  }
  bytes.resize(filled);
  return true;
}

SettingsRead read_open_file(const FileHandle& handle, std::uint64_t size, std::string& bytes) {
  const bool usable = ::GetFileType(handle.get()) == FILE_TYPE_DISK && size <= kMaxSettingsBytes;
  if (usable && read_all(handle, static_cast<std::size_t>(size), bytes)) return SettingsRead::kRead;
  bytes.clear();
  return SettingsRead::kUnreadable;
}

}  // namespace

SettingsFileUse::SettingsFileUse() {
  ::AcquireSRWLockExclusive(&file_use);
}

SettingsFileUse::~SettingsFileUse() {
  ::ReleaseSRWLockExclusive(&file_use);
}

FileIdentity settings_identity(const char* path) {
  return identity_of(path);
}

SettingsBytes read_settings_bytes(const char* path) {
  SettingsBytes file;
  file.identity = settings_identity(path);
  file.settled = file.identity.exists && is_settled(file.identity);
  const SettingsFileUse use;
  // Nobody is kept from writing or replacing it meanwhile. A directory does not open.
  const FileHandle handle(::CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  file.outcome = handle.is_open() ? read_open_file(handle, file.identity.size, file.bytes) : outcome_of_failed_open();
  // Not missing but without an identity: somebody is about to take it away or to put another in its place.
  if (file.outcome == SettingsRead::kMissing) file.settled = true;
  return file;
}

}  // namespace pv::platform
