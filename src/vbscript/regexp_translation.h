// Patterns of VBScript's RegExp in the words of PCRE2, which has more syntax than they may use.
#pragma once

#include <string>
#include <string_view>

namespace pv::vbscript {

// What the pattern means in VBScript, for PCRE2. Raises 5017 to 5021 where PCRE2 would accept what VBScript refuses.
std::string translate_pattern(std::string_view pattern);

// Raises the error 5017 to 5021 with Microsoft's text.
[[noreturn]] void raise_pattern_error(int number);

}  // namespace pv::vbscript
