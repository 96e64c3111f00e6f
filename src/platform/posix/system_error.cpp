#include "platform/system_error.h"

#include <array>
#include <cerrno>
#include <cstring>

#include "platform/last_error.h"

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

const int kNotFoundError = ENOENT;
const int kExistsError = EEXIST;
const int kNotOpenError = EBADF;
const int kInvalidError = EINVAL;
const int kTooLargeError = EFBIG;
const int kDiskFullError = ENOSPC;
const int kInputOutputError = EIO;
const int kNoPermissionError = EACCES;
const int kTooManyFilesError = EMFILE;

int last_system_error() {
  return errno;
}

void set_last_system_error(int code) {
  errno = code;
}

std::string system_error_text(int code) {
  std::array<char, 256> buffer{};
  return text_of(::strerror_r(code, buffer.data(), buffer.size()), buffer.data());
}

}  // namespace pv::platform
