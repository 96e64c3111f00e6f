// CreateObject("VBScript.RegExp") and New RegExp.
#pragma once

#include "vbscript/object.h"

namespace pv::vbscript {

// A new RegExp with one reference, which is the caller's. Without the PCRE2 library nullptr: such a build has none.
Object* new_regexp(Engine& engine);

}  // namespace pv::vbscript
