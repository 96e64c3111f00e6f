// What last_system_error() will report, for the code that the systems share.
#pragma once

#include "platform/system_error.h"

namespace pv::platform {

// The system's own numbers for failures that are found without asking the system.
extern const int kNotFoundError;
extern const int kExistsError;
extern const int kNotOpenError;
extern const int kInvalidError;
extern const int kTooLargeError;
extern const int kDiskFullError;
extern const int kInputOutputError;
extern const int kNoPermissionError;
extern const int kTooManyFilesError;

void set_last_system_error(int code);

// Keeps the last error over clean-up, so that a caller learns why the work failed and not how the clean-up went.
class KeptSystemError {
 public:
  KeptSystemError() : saved_(last_system_error()) {}
  ~KeptSystemError() { set_last_system_error(saved_); }
  KeptSystemError(const KeptSystemError&) = delete;
  KeptSystemError& operator=(const KeptSystemError&) = delete;

 private:
  int saved_;
};

}  // namespace pv::platform
