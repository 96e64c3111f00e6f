// Script diagnostics.
#pragma once

#include <string_view>

namespace pv {

// Writes a text as it is to where "Debug Status" says: 1 through report_write, 2 to standard output, else nowhere.
void script_debug_print(std::string_view text);

}  // namespace pv
