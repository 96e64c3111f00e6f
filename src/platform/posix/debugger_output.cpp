#include "platform/debugger_output.h"

#include <unistd.h>

#include "platform/posix/descriptor.h"

namespace pv::platform {

extern const bool kDebuggerReadsStandardError = true;

void write_debugger_output(std::string_view text) {
  // Nobody could be told of a failure here.
  static_cast<void>(write_all(STDERR_FILENO, text));
}

}  // namespace pv::platform
