// The body of a message: its text, the headers of its MIME parts, its attachments and links.
#pragma once

#include "scan/message_lines.h"
#include "scan/scan_context.h"

namespace pv {

// Evaluates all lines that are left. The boundary that the header section announced decides whether MIME parts or
// "begin"/"end" blocks are looked for; boundaries of nested multiparts are not known.
void scan_body(MessageLines& lines, ScanContext& scan);

}  // namespace pv
