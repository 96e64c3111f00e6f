#include "platform/directory.h"

#include <sys/stat.h>

#include <cerrno>

#include "platform/paths.h"
#include "platform/posix/ascii_case.h"
#include "platform/posix/directory_names.h"
#include "platform/posix/file_faults.h"
#include "platform/posix/path_parts.h"

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

DirectoryEntry described(std::string_view name, const struct stat& status) {
  const bool is_directory = S_ISDIR(status.st_mode);
  return {std::string(name), is_directory, is_directory ? 0 : static_cast<std::uint64_t>(status.st_size)};
}

// nullopt for one that has gone meanwhile, and for a link that leads nowhere.
std::optional<DirectoryEntry> describe(const DirectoryNames& names, const char* name) {
  struct stat status;
  if (::fstatat(names.descriptor(), name, &status, 0) != 0) return std::nullopt;
  return described(name, status);
}

std::optional<DirectoryEntry> find_by_name(std::string_view path) {
  const auto found = existing_path(path);
  struct stat status;
  if (!found || ::stat(found->c_str(), &status) != 0) return std::nullopt;
  return described(last_component(*found), status);
}

// The order of a directory changes with every file system; the first name in byte order is the same everywhere.
std::optional<DirectoryEntry> find_by_wildcard(std::string_view directory, std::string_view pattern) {
  const auto found = existing_path(directory.empty() ? "." : directory);
  if (!found) return std::nullopt;
  DirectoryNames names(*found);
  std::optional<DirectoryEntry> first;
  while (const char* name = names.next()) {
    if (!found_by(pattern, name) || (first && first->name <= name)) continue;
    if (auto entry = describe(names, name)) first = std::move(entry);
  }
  return first;
}

}  // namespace

std::optional<DirectoryEntry> find_first_entry(std::string_view path) {
  const std::string_view name = last_component(path);
  if (name.empty()) return std::nullopt;
  if (name.find_first_of("*?") == std::string_view::npos) return find_by_name(path);
  return find_by_wildcard(path.substr(0, path.size() - name.size()), name);
}

bool for_each_entry(std::string_view directory, const std::function<bool(const DirectoryEntry&)>& visit) {
  const auto found = existing_path(directory);
  if (!found) return false;
  DirectoryNames names(*found);
  if (!names.is_open()) return false;
  while (const char* name = names.next()) {
    const auto entry = describe(names, name);
    if (entry && !visit(*entry)) break;
  }
  return true;
}

bool create_directory(std::string_view path) {
  const std::size_t name_end = path.find_last_not_of("/\\") + 1;
  const std::string created = creatable_path(path.substr(0, name_end));
  return !fails_for_test(FileOperation::kCreateDirectory) && ::mkdir(created.c_str(), 0777) == 0;
}

}  // namespace pv::platform
