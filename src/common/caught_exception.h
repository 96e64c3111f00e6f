// Exceptions caught around calls into other components, reported in one fixed block of text.
#pragma once

#include <string_view>

namespace pv {

// Reports the exception that is being handled to the system's event log and through report_write. Call it inside the
// handler. Throws nothing.
//
//     HasORBDBEntry handled an exception; session will be dropped.
//     The exception was: no such zone
//     The exception occurred in : ..\SMTP\DNSQuery, line 104
//
// For a COM error (pvmtafilter/plugin.h) it gives code, meaning, source and description in place of the last two lines.
void report_caught_exception(std::string_view operation, std::string_view source_file, int line) noexcept;

}  // namespace pv
