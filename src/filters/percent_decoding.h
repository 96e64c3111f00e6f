// Percent-encoded text, as web links have it.
#pragma once

#include <string>
#include <string_view>

namespace pv {

// The text with each "%" and two hexadecimal digits as the byte they give. A "%" without two digits is dropped, one at
// the end too; "+" is no blank. The result may hold any byte, NULs included.
std::string percent_decode(std::string_view text);

}  // namespace pv
