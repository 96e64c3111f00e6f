#include "agent/pump_wait.h"

#include <atomic>

#include "platform/clock.h"

namespace pv {
namespace {

constinit std::atomic<PumpWait> wait_in_place{&pump_wait};

}  // namespace

std::int32_t pump_wait(platform::Event* event, std::uint32_t timeout_ms) {
  if (event == nullptr) return 0;
  const std::int64_t start = platform::process_clock_ms();
  for (;;) {
    switch (event->wait_or_input(timeout_ms)) {
      case platform::WaitEnd::kSignalled:
        return 1;
      case platform::WaitEnd::kOther:
        return 0;
      case platform::WaitEnd::kInput:
        break;
    }
    // Each dispatched message may take its time; without this check a busy window would make the wait endless.
    while (platform::dispatch_one_input()) {
      if (platform::process_clock_ms() - start >= timeout_ms) return 1;
    }
  }
}

void set_pump_wait_for_test(PumpWait wait) {
  wait_in_place.store(wait != nullptr ? wait : &pump_wait);
}

std::int32_t wait_round(platform::Event* event, std::uint32_t timeout_ms) {
  return wait_in_place.load()(event, timeout_ms);
}

}  // namespace pv
