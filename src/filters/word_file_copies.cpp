#include "filters/word_file_copies.h"

#include <optional>
#include <utility>

#include "filters/limits.h"
#include "filters/word_file.h"
#include "platform/file.h"

namespace pv {
namespace {

std::shared_ptr<const WordFileCopy> read_copy(const std::string& path) {
  platform::InputFile file;
  if (!file.open(path, platform::FileMode::kText)) return nullptr;
  std::string bytes;
  std::vector<std::size_t> ends;
  while (const std::optional<std::string_view> line = file.read_line(kTableLine)) {
    const std::string_view pattern = pattern_of_line(*line);
    if (pattern.empty()) continue;
    bytes.append(pattern);
    ends.push_back(bytes.size());
  }
  return std::make_shared<const WordFileCopy>(std::move(bytes), ends);
}

}  // namespace

WordFileCopy::WordFileCopy(std::string patterns, std::span<const std::size_t> ends) : bytes(std::move(patterns)) {
  bytes.shrink_to_fit();
  lines.reserve(ends.size());
  std::size_t start = 0;
  for (const std::size_t end : ends) {
    lines.push_back(std::string_view(bytes).substr(start, end - start));
    start = end;
  }
}

std::shared_ptr<const WordFileCopy> WordFileCopies::current(const std::string& path) {
  const platform::FileIdentity identity = platform::file_identity(path);
  const std::lock_guard lock(mutex_);
  Held& held = held_[path];
  if (held.settled && held.identity == identity) return held.copy;
  std::shared_ptr<const WordFileCopy> fresh = read_copy(path);
  // One that is there and cannot be opened may be opened the next time, though nothing about it changes.
  held.settled = platform::is_settled(identity) && identity.exists == (fresh != nullptr);
  held.identity = identity;
  const bool same = fresh != nullptr && held.copy != nullptr && fresh->lines == held.copy->lines;
  if (!same) held.copy = std::move(fresh);
  return held.copy;
}

}  // namespace pv
