// Progress lines on standard output.
#pragma once

#include <string_view>

#include "common/formats.h"

namespace pv {

// Prints to standard output as printf does; of any length, with the line ends as given. Any thread; a call's text stays
// in one piece. Failures are ignored: nobody may be listening.
void print(const char* format, ...) PV_PRINTF(1, 2);

// Prints a text as it is.
void print_text(std::string_view text);

// Hands everything printed so far to the system; for what another program or process prints next to the same place.
void flush_output();

}  // namespace pv
