// A text log as a C stream, because the DNS look-up library writes into the same open file.
#pragma once

#include <cstdio>
#include <string_view>

namespace pv::platform {

// Opens a file for appending in text mode: "\n" is stored as CR LF, whoever writes to the stream. What one flush hands
// over is appended in one piece, also beside other processes (on Windows in pieces of some kilobytes). nullptr when it
// cannot be opened. The caller closes it with std::fclose.
std::FILE* open_log_stream(std::string_view path);

}  // namespace pv::platform
