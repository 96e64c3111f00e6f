#include "platform/system_error.h"

#include <windows.h>

#include <array>

#include "platform/last_error.h"

namespace pv::platform {

const int kNotFoundError = ERROR_FILE_NOT_FOUND;
const int kExistsError = ERROR_FILE_EXISTS;
const int kNotOpenError = ERROR_INVALID_HANDLE;
const int kInvalidError = ERROR_INVALID_PARAMETER;
const int kTooLargeError = ERROR_FILE_TOO_LARGE;
const int kDiskFullError = ERROR_DISK_FULL;
const int kInputOutputError = ERROR_IO_DEVICE;
const int kNoPermissionError = ERROR_ACCESS_DENIED;
const int kTooManyFilesError = ERROR_TOO_MANY_OPEN_FILES;

int last_system_error() {
  return static_cast<int>(::GetLastError());
}

void set_last_system_error(int code) {
  ::SetLastError(static_cast<DWORD>(code));
}

std::string system_error_text(int code) {
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  std::array<char, 1024> buffer{};
  const DWORD length = ::FormatMessageA(kFlags, nullptr, static_cast<DWORD>(code), 0, buffer.data(),
                                        static_cast<DWORD>(buffer.size()), nullptr);
  const std::string text(buffer.data(), length);
  const std::size_t end = text.find_last_not_of(" \r\n") + 1;
  return end > 0 ? text.substr(0, end) : "Unknown error " + std::to_string(code);
}

}  // namespace pv::platform
