// The header section of a message: subject, addresses, priority, SPF, and every line for the header criterion.
#pragma once

#include "scan/message_lines.h"
#include "scan/scan_context.h"

namespace pv {

// Evaluates the lines up to and including the empty line that ends the section, or to the end of the file. False when
// the message carries the mark of having been filtered in this scope before; nothing after the mark is looked at.
[[nodiscard]] bool scan_header_section(MessageLines& lines, ScanContext& scan);

}  // namespace pv
