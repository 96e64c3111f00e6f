// CreateObject("Scripting.Dictionary").
#pragma once

#include "vbscript/object.h"

namespace pv::vbscript {

// A new empty dictionary with one reference, which is the caller's. Keys keep the order in which they were added.
Object* new_dictionary(Engine& engine);

}  // namespace pv::vbscript
