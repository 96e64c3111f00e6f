#include "platform/file_identity.h"

#include <windows.h>

#include <optional>
#include <string>

#include "platform/last_error.h"
#include "platform/paths.h"
#include "platform/windows/file_status.h"

namespace pv::platform {
namespace {

// In the system's ticks of 100 ns. Its clock moves in steps of 16 ms at most; the rest is margin.
constexpr std::int64_t kSettledAfter = 1'000'000;
// FAT keeps even seconds only.
constexpr std::int64_t kCoarseTick = 20'000'000;

std::int64_t joined(DWORD high, DWORD low) {
  return static_cast<std::int64_t>((std::uint64_t{high} << 32) | low);
}

std::int64_t ticks(const FILETIME& time) {
  return joined(time.dwHighDateTime, time.dwLowDateTime);
}

}  // namespace

// By the name: for its number and its time of change the file would have to be opened, which is slow and keeps others
// from replacing it. So an edit that keeps the size and puts back the time of modification goes unnoticed.
FileIdentity identity_of(const char* path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (!::GetFileAttributesExA(path, GetFileExInfoStandard, &data)) return {};
  FileIdentity identity;
  identity.exists = true;
  identity.size = static_cast<std::uint64_t>(joined(data.nFileSizeHigh, data.nFileSizeLow));
  identity.modified = ticks(data.ftLastWriteTime);
  identity.file = static_cast<std::uint64_t>(ticks(data.ftCreationTime));  // stands for the number
  return identity;
}

FileIdentity file_identity(std::string_view path) {
  const KeptSystemError kept;  // a missing file is none of the caller's failures
  const std::optional<std::string> found = existing_path(path);
  return found ? identity_of(found->c_str()) : FileIdentity();
}

// A time of change in the future counts by its distance too: the clock was set back, and the next change gets a time
// that is not this one. A file that is not there has nothing to change.
bool is_settled(const FileIdentity& identity) {
  FILETIME now{};
  ::GetSystemTimeAsFileTime(&now);
  const std::int64_t age = ticks(now) - identity.modified;
  const std::int64_t needed = kSettledAfter + (identity.modified % kCoarseTick == 0 ? kCoarseTick : 0);
  return !identity.exists || (age < 0 ? -age : age) > needed;
}

}  // namespace pv::platform
