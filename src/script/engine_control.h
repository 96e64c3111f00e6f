// Our own VBScript engine in the place of the system's script control.
#pragma once

#include <memory>

#include "platform/script_control.h"

namespace pv {

// A fresh control over a fresh engine. Its programs compute and nothing else: they reach no file, process or network,
// and end within a second or so.
std::unique_ptr<platform::ScriptControl> new_engine_control();

}  // namespace pv
