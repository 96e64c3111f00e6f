// The bracketed connector form of addresses: "[SMTP:someone@example.org]", lists of them joined by ";".
//
// In each, an output longer than its capacity is cut.
#pragma once

#include <string_view>

#include "common/bounded_text.h"

namespace pv {

// The text between the first ":" and the first "]" after it, and true; a "]" before the ":" does not count. With a ":"
// alone, the text from it on, the ":" included; without one, the whole text; then false.
bool ExtractAddress(std::string_view text, BoundedText<2048>& address);

// The same when both characters are there; else `address` is emptied.
void BareSenderAddress(std::string_view text, BoundedText<1024>& address);

// Everything after the first ":" but the last character (the closing bracket), and true; nothing when the ":" ends the
// text. Without a ":", the whole text and false.
bool StripAddressType(std::string_view text, BoundedText<512>& address);

}  // namespace pv
