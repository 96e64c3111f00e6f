#include "platform/directory.h"

#include "platform/ascii_case.h"
#include "platform/directory_names.h"
#include "platform/file_faults.h"
#include "platform/path_parts.h"
#include "platform/paths.h"

namespace pv::platform {
namespace {

// Goes back to the last '*' only, so that no pattern takes more than text times pattern steps.
bool matches_wildcard(std::string_view text, std::string_view pattern) {
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t after_star = std::string_view::npos;
  std::size_t star_end = 0;  // where the text of the last '*' ends for now
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      after_star = ++p;
      star_end = t;
    } else if (p < pattern.size() && (pattern[p] == '?' || ascii_lower(pattern[p]) == ascii_lower(text[t]))) {
      ++p;
      ++t;
    } else if (after_star != std::string_view::npos) {
      p = after_star;
      t = ++star_end;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

bool found_by(std::string_view pattern, std::string_view name) {
  return pattern == "*.*" || matches_wildcard(name, pattern);
}

// The order of a directory changes with every file system; the first name in byte order is the same everywhere.
std::optional<DirectoryEntry> find_by_wildcard(std::string_view directory, std::string_view pattern) {
  const auto found = existing_path(directory.empty() ? "." : directory);
  if (!found) return std::nullopt;
  DirectoryNames names(*found);
  std::optional<DirectoryEntry> first;
  while (const char* name = names.next()) {
    if (!found_by(pattern, name) || (first && first->name <= name)) continue;
    if (auto entry = names.describe()) first = std::move(entry);
  }
  return first;
}

}  // namespace

std::optional<DirectoryEntry> find_first_entry(std::string_view path) {
  const std::string_view name = last_component(path);
  if (name.empty()) return std::nullopt;
  if (name.find_first_of("*?") == std::string_view::npos) return entry_at(path);
  return find_by_wildcard(path.substr(0, path.size() - name.size()), name);
}

bool for_each_entry(std::string_view directory, const std::function<bool(const DirectoryEntry&)>& visit) {
  const auto found = existing_path(directory);
  if (!found) return false;
  DirectoryNames names(*found);
  if (!names.is_open()) return false;
  while (names.next() != nullptr) {
    const auto entry = names.describe();
    if (entry && !visit(*entry)) break;
  }
  return true;
}

bool create_directory(std::string_view path) {
  const std::size_t name_end = path.find_last_not_of("/\\") + 1;
  const std::string created = creatable_path(path.substr(0, name_end));
  return !fails_for_test(FileOperation::kCreateDirectory) && make_directory(created);
}

}  // namespace pv::platform
