// The calling thread's last system error.
#pragma once

#include <string>

namespace pv::platform {

// The system's own number of the calling thread's last failure: errno, on Windows what GetLastError() gives. 0 for
// none; 2 means "not found" on both.
int last_system_error();

// The system's text for a code that last_system_error() gave, without a line end.
std::string system_error_text(int code);

}  // namespace pv::platform
