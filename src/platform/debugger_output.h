// The output that a debugger shows (standard error here).
#pragma once

#include <string_view>

namespace pv::platform {

// Writes the text unchanged.
void write_debugger_output(std::string_view text);

}  // namespace pv::platform
