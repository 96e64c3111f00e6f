#include "platform/paths.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#include "platform/ascii_case.h"
#include "platform/directory_names.h"
#include "platform/path_parts.h"
#include "platform/posix/absent_names.h"
#include "platform/posix/file_status.h"

namespace pv::platform {
namespace {

bool exists(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0;
}

// Where `path` begins with this directory (empty: the current one).
FileIdentity identity_of_directory(const std::string& directory) {
  struct stat status;
  return ::stat(directory.empty() ? "." : directory.c_str(), &status) == 0 ? identity_of(status) : FileIdentity();
}

// The name under which `directory` (empty: the current one) holds `name`, or empty. The directory was `asked` for, and
// did not hold it as spelt, in this letter case. Of several that differ only in case the exact one, else the first in
// byte order, so that the answer does not depend on the file system.
std::string stored_name(std::string_view asked, const std::string& directory, const std::string& name) {
  if (asked != directory && exists(directory + name)) return name;
  // The first of all spellings in byte order, and a common one: it spares reading a directory of very many files.
  std::string upper = name;
  std::transform(upper.begin(), upper.end(), upper.begin(), ascii_upper);
  if (upper != name && exists(directory + upper)) return upper;
  const FileIdentity before = identity_of_directory(directory);
  DirectoryNames names(directory);
  std::string best;
  while (const char* entry = names.next()) {
    if (equal_nocase(entry, name) && (best.empty() || entry < best)) best = entry;
  }
  if (best.empty()) note_absent(directory + name, before);
  return best;
}

// Works from the end: in practice only the file's own name is spelt differently, and its directory needs one look-up.
// One level of recursion a component; PATH_MAX limits those.
std::optional<std::string> look_up(const std::string& path) {
  if (exists(path)) return path;
  const std::size_t name_end = path.find_last_not_of('/') + 1;
  if (name_end == 0) return std::nullopt;  // empty, or separators alone
  const std::size_t name_begin = path.find_last_of('/', name_end - 1) + 1;

  const auto directory = name_begin == 0 ? std::optional<std::string>("") : look_up(path.substr(0, name_begin));
  if (!directory) return std::nullopt;
  const std::string_view asked = std::string_view(path).substr(0, name_begin);
  const std::string name = stored_name(asked, *directory, path.substr(name_begin, name_end - name_begin));
  std::string found = *directory + name + path.substr(name_end);
  if (name.empty() || !exists(found)) return std::nullopt;
  return found;
}

std::string in_existing_directory(const std::string& path) {
  const std::size_t name_begin = path.find_last_of('/') + 1;
  if (name_begin == 0 || name_begin == path.size()) return path;
  const auto directory = look_up(path.substr(0, name_begin));
  return directory ? *directory + path.substr(name_begin) : path;
}

}  // namespace

extern const char kPathSeparator = '/';

std::string system_form(std::string_view path) {
  if (path.size() >= PATH_MAX || path.find('\0') != std::string_view::npos) return {};
  std::string form(path);
  std::replace(form.begin(), form.end(), '\\', '/');
  return form;
}

std::string path_in_existing_directory(std::string_view path) {
  return in_existing_directory(system_form(path));
}

bool known_to_name_nothing(const std::string& form) {
  const std::optional<FileIdentity> directory = directory_without(form);
  return directory && identity_of_directory(form.substr(0, form.find_last_of('/') + 1)) == *directory;
}

std::optional<std::string> existing_path(std::string_view path) {
  return path_in_another_case(system_form(path));
}

std::optional<std::string> path_in_another_case(const std::string& form) {
  auto found = look_up(form);
  if (!found) errno = ENOENT;
  return found;
}

std::string creatable_path(std::string_view path) {
  const std::string form = system_form(path);
  if (auto found = look_up(form)) return *std::move(found);
  return in_existing_directory(form);
}

}  // namespace pv::platform
