// Keeps errno over clean-up, so that a caller learns why the work failed and not how the clean-up went.
#pragma once

#include <cerrno>

namespace pv::platform {

class KeptErrno {
 public:
  KeptErrno() : saved_(errno) {}
  ~KeptErrno() { errno = saved_; }
  KeptErrno(const KeptErrno&) = delete;
  KeptErrno& operator=(const KeptErrno&) = delete;

 private:
  int saved_;
};

}  // namespace pv::platform
