// The wait that keeps a thread's window messages flowing.
#pragma once

#include <cstdint>

#include "platform/event.h"

namespace pv {

// Waits for the event; messages for the thread's windows are dispatched meanwhile. 1 when the event was signalled, or
// when `timeout_ms` had passed after a message was dispatched; 0 when the time ran out or `event` is nullptr.
std::int32_t pump_wait(platform::Event* event, std::uint32_t timeout_ms);

// Test hook: what the gate and the reload wait with; nullptr brings pump_wait back.
using PumpWait = std::int32_t (*)(platform::Event* event, std::uint32_t timeout_ms);
void set_pump_wait_for_test(PumpWait wait);

// pump_wait, or what a test put in its place.
std::int32_t wait_round(platform::Event* event, std::uint32_t timeout_ms);

}  // namespace pv
