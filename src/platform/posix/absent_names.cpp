#include "platform/posix/absent_names.h"

#include <array>
#include <cstddef>
#include <functional>
#include <mutex>

namespace pv::platform {
namespace {

struct AbsentName {
  FileIdentity directory;
  std::size_t length = 0;
  std::array<char, 255> path{};

  bool is(std::string_view asked) const { return std::string_view(path.data(), length) == asked; }
};

constinit std::mutex mutex;
constinit std::array<AbsentName, 256> names;  // by the hash of the path; guarded by the mutex

AbsentName& place_of(std::string_view path) {
  return names[std::hash<std::string_view>()(path) % names.size()];
}

}  // namespace

std::optional<FileIdentity> directory_without(std::string_view path) {
  const std::lock_guard lock(mutex);
  const AbsentName& name = place_of(path);
  return name.length > 0 && name.is(path) ? std::optional(name.directory) : std::nullopt;
}

void note_absent(std::string_view path, const FileIdentity& directory) {
  if (!directory.exists || !is_settled(directory)) return;
  const std::lock_guard lock(mutex);
  AbsentName& name = place_of(path);
  if (path.empty() || path.size() > name.path.size()) return;
  name.length = path.copy(name.path.data(), name.path.size());
  name.directory = directory;
}

}  // namespace pv::platform
