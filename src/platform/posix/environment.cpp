#include "platform/environment.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace pv::platform {

// The environment is changed before a program has other threads, or not at all.
std::optional<std::string> environment_variable(const char* name) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): see above
  if (value == nullptr) return std::nullopt;
  return value;
}

void set_environment_variable(const char* name, std::string_view value) {
  ::setenv(name, std::string(value).c_str(), 1);  // NOLINT(concurrency-mt-unsafe): see above
}

std::uint64_t process_id() {
  return static_cast<std::uint64_t>(::getpid());
}

std::string program_directory() {
  std::error_code error;
  return std::filesystem::read_symlink("/proc/self/exe", error).parent_path().string();
}

}  // namespace pv::platform
