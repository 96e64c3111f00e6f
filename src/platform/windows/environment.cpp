#include "platform/environment.h"

#include <windows.h>

#include <cstdlib>

namespace pv::platform {

std::optional<std::string> environment_variable(const char* name) {
  std::string value;
  DWORD size = 256;
  do {
    value.resize(size);
    ::SetLastError(ERROR_SUCCESS);
    size = ::GetEnvironmentVariableA(name, value.data(), static_cast<DWORD>(value.size()));
  } while (size >= value.size());
  if (size == 0 && ::GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
  value.resize(size);
  return value;
}

// The C run-time keeps a copy of its own, and takes an empty value for none.
void set_environment_variable(const char* name, std::string_view value) {
  const std::string text(value);
  ::_putenv_s(name, text.c_str());
  ::SetEnvironmentVariableA(name, text.c_str());
}

std::uint64_t process_id() {
  return ::GetCurrentProcessId();
}

std::string program_directory() {
  std::string path(MAX_PATH, '\0');
  DWORD length = ::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  while (length == path.size()) {  // cut
    path.resize(2 * path.size());
    length = ::GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  }
  path.resize(length);
  const std::size_t end = path.find_last_of('\\');
  return end == std::string::npos ? std::string() : path.substr(0, end);
}

}  // namespace pv::platform
