// Attributes in the lines of MIME headers (RFC 2045, RFC 2183), as the message scan looks for them. A line ends at its
// first NUL. Nothing is allocated.
#pragma once

#include <string_view>

#include "common/bounded_text.h"

namespace pv {

using AttributeText = BoundedText<1024>;

enum class AttributeSearch {
  kFound,
  kAbsent,
  kMalformed,  // a quote is not closed or the value has more than 1022 bytes
};

// What AttributeValue() does, without printing.
AttributeSearch find_attribute(std::string_view line, std::string_view attribute, AttributeText& output);

// The value of `attribute` (the name alone) in a line: what follows the first "attribute=" (in any case), up to the
// closing quote, or unquoted up to ";", blank, tab or line end. "name" is found in "filename=" as well. False, and an
// empty output, when it does not occur. False also when a quote is not closed or the value has more than 1022 bytes,
// and then a line is printed. Cheap for a line that does not hold it: asked of every line of a part header.
bool AttributeValue(std::string_view line, std::string_view attribute, AttributeText& output);

// The value that follows the first `parameter` (a name with its "=", in any case) in a line, white space skipped: up to
// the closing quote, ";" or line end, cut to 1023 bytes. False when the parameter does not occur or ends the line; then
// `output` stays.
bool HeaderParameterValue(std::string_view line, std::string_view parameter, AttributeText& output);

}  // namespace pv
