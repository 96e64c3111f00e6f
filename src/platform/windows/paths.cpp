// The system itself looks names up without regard to case; what is left to do is asking it.
#include "platform/paths.h"

#include <windows.h>

#include <algorithm>

#include "platform/last_error.h"
#include "platform/path_parts.h"

namespace pv::platform {
namespace {

constexpr std::size_t kLongestPath = 32767;  // bytes, terminator included; most of the system ends at 260 already

}  // namespace

extern const char kPathSeparator = '\\';

std::string system_form(std::string_view path) {
  if (path.size() >= kLongestPath || path.find('\0') != std::string_view::npos) return {};
  std::string form(path);
  std::replace(form.begin(), form.end(), '/', '\\');
  return form;
}

std::string path_in_existing_directory(std::string_view path) {
  return system_form(path);
}

std::optional<std::string> existing_path(std::string_view path) {
  std::string form = system_form(path);
  if (form.empty()) {
    set_last_system_error(kNotFoundError);
    return std::nullopt;
  }
  if (::GetFileAttributesA(form.c_str()) == INVALID_FILE_ATTRIBUTES) return std::nullopt;
  return form;
}

bool known_to_name_nothing(const std::string&) {
  return false;
}

std::optional<std::string> path_in_another_case(const std::string&) {
  return std::nullopt;
}

std::string creatable_path(std::string_view path) {
  return system_form(path);
}

}  // namespace pv::platform
