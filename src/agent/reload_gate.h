// What keeps message processing and the reload of filters apart.
#pragma once

#include <atomic>
#include <cstdint>

namespace pv {

// Calls of FilterExecute that are inside the driver, those waiting for the reload lock included.
extern std::atomic<std::int32_t> messages_in_flight;

// 1 while a message's thread reloads the filters.
extern std::atomic<std::int32_t> reload_in_progress;

inline constexpr std::uint32_t kWaitRoundMs = 500;
inline constexpr int kGateRounds = 120;  // about 60 s; a message then goes on and waits for the reload lock instead
inline constexpr int kReloadRounds =
    180;  // about 90 s; the filters are then replaced under the messages still in flight

// Waits while a reload is in progress, at most kGateRounds; running out of them is reported.
void wait_at_reload_gate();

// Waits until the calling message is the only one in flight, at most kReloadRounds; running out of them is reported.
void wait_for_other_messages();

}  // namespace pv
