// The words of the language.
#pragma once

#include <string_view>

#include "vbscript/token.h"

namespace pv::vbscript {

// What a word means, in any case: kIdentifier when it is a name and nothing else.
TokenKind keyword_kind(std::string_view word);

}  // namespace pv::vbscript
