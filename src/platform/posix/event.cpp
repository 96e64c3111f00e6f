#include "platform/event.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace pv::platform {

struct Event::State {
  std::mutex mutex;
  std::condition_variable changed;
  bool signalled = false;  // guarded by mutex
};

Event::Event() : state_(std::make_unique<State>()) {}
Event::~Event() = default;

void Event::signal() {
  const std::lock_guard lock(state_->mutex);
  state_->signalled = true;
  // Under the lock: a waiter that has seen the signal may destroy the event at once.
  state_->changed.notify_one();
}

WaitEnd Event::wait_or_input(std::uint32_t timeout_ms) {
  std::unique_lock lock(state_->mutex);
  const bool signalled =
      state_->changed.wait_for(lock, std::chrono::milliseconds(timeout_ms), [this] { return state_->signalled; });
  if (signalled) state_->signalled = false;
  return signalled ? WaitEnd::kSignalled : WaitEnd::kOther;
}

bool dispatch_one_input() {
  return false;  // threads have no windows here
}

}  // namespace pv::platform
