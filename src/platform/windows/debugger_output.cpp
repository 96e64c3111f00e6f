#include "platform/debugger_output.h"

#include <windows.h>

#include <string>

namespace pv::platform {

extern const bool kDebuggerReadsStandardError = false;

void write_debugger_output(std::string_view text) {
  ::OutputDebugStringA(std::string(text).c_str());
}

}  // namespace pv::platform
