// The output that a debugger shows (standard error on posix).
#pragma once

#include <string_view>

namespace pv::platform {

// Whether that is the process's standard error.
extern const bool kDebuggerReadsStandardError;

// Writes the text unchanged.
void write_debugger_output(std::string_view text);

}  // namespace pv::platform
