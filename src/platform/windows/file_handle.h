// A handle of a file of the system, closed at its end.
#pragma once

#include <windows.h>

namespace pv::platform {

class FileHandle {
 public:
  explicit FileHandle(HANDLE handle = INVALID_HANDLE_VALUE) : handle_(handle) {}
  ~FileHandle() { close(); }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  // Closes what it held before.
  void reset(HANDLE handle) {
    close();
    handle_ = handle;
  }
  // False when there is none, or the system could not close it.
  bool close() {
    const HANDLE closed = handle_;
    handle_ = INVALID_HANDLE_VALUE;
    return closed != INVALID_HANDLE_VALUE && ::CloseHandle(closed);
  }
  bool is_open() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

}  // namespace pv::platform
