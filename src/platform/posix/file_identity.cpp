#include "platform/file_identity.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "platform/last_error.h"
#include "platform/path_parts.h"
#include "platform/posix/file_status.h"

namespace pv::platform {
namespace {

// File times move in ticks of the kernel's clock, 10 ms at most; the rest is margin.
constexpr std::int64_t kSettledAfter_ns = 100'000'000;
// Some file systems keep full seconds only, or even ones.
constexpr std::int64_t kCoarseTick_ns = 2'000'000'000;

std::int64_t nanoseconds(const timespec& time) {
  return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

FileIdentity identity_of(const struct stat& status) {
  return {true,
          status.st_dev,
          status.st_ino,
          static_cast<std::uint64_t>(status.st_size),
          nanoseconds(status.st_mtim),
          nanoseconds(status.st_ctim)};
}

FileIdentity file_identity(std::string_view path) {
  const KeptSystemError kept;  // a missing file is none of the caller's failures
  struct stat status;
  char as_spelt[PATH_MAX];  // memory of the message path is not allocated
  if (path.size() >= sizeof as_spelt || path.find('\0') != std::string_view::npos) return {};
  *std::replace_copy(path.begin(), path.end(), as_spelt, '\\', '/') = '\0';
  if (::stat(as_spelt, &status) == 0) return identity_of(status);
  const std::optional<std::string> found = path_in_another_case(as_spelt);
  return found && ::stat(found->c_str(), &status) == 0 ? identity_of(status) : FileIdentity();
}

// A time of change in the future counts by its distance too: the clock was set back, and the next change gets a time
// that is not this one. A file that is not there has nothing to change.
bool is_settled(const FileIdentity& identity) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  const std::int64_t needed = kSettledAfter_ns + (identity.changed % 1'000'000'000 == 0 ? kCoarseTick_ns : 0);
  return !identity.exists || std::llabs(nanoseconds(now) - identity.changed) > needed;
}

}  // namespace pv::platform
