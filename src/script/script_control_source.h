// Where the script host has its controls from.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/script_control.h"

namespace pv {

// Makes a fresh control; on failure nullptr, and the system's code in `failure`.
using ScriptControlFactory = std::unique_ptr<platform::ScriptControl> (*)(std::int32_t& failure);

// The system's script control; our own engine where the system has none. A control that is there and cannot be made
// (the thread is in no COM apartment) is a failure.
std::unique_ptr<platform::ScriptControl> new_script_control(std::int32_t& failure);

// Makes new_script_control use `factory`; nullptr: the system again. Any thread; holds for the whole process.
void replace_script_controls_for_test(ScriptControlFactory factory);

}  // namespace pv
