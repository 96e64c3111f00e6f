// Scripts made of fragments: bytes as pieces of programs, so that more of them compile than of bytes as text.
#pragma once

#include <string>
#include <string_view>

namespace pv::fuzz {

// An input that begins with byte 1 names one fragment with each of its other bytes; any other is a script as it stands.
std::string script_of(std::string_view input);

}  // namespace pv::fuzz
