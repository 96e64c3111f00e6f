#include "platform/system_error.h"

#include <array>
#include <cerrno>
#include <cstring>

namespace pv::platform {
namespace {

// strerror_r returns the text in one C library and whether the buffer holds it in another.
[[maybe_unused]] const char* text_of(const char* returned, const char*) {
  return returned;
}
[[maybe_unused]] const char* text_of(int, const char* buffer) {
  return buffer;
}

}  // namespace

int last_system_error() {
  return errno;
}

std::string system_error_text(int code) {
  std::array<char, 256> buffer{};
  return text_of(::strerror_r(code, buffer.data(), buffer.size()), buffer.data());
}

}  // namespace pv::platform
