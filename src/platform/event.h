// Events, and the wait that a thread with windows of its own needs.
#pragma once

#include <cstdint>
#include <memory>

namespace pv::platform {

enum class WaitEnd {
  kSignalled,
  kInput,  // window messages wait for the calling thread; only on systems that have them
  kOther,  // time-out or failure
};

// An auto-reset event: one signal ends one wait, a signal without a waiter ends the next.
class Event {
 public:
  Event();
  ~Event();
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  void signal();

  // Waits until the event is signalled, input arrives for the calling thread, or `timeout_ms` have passed.
  WaitEnd wait_or_input(std::uint32_t timeout_ms);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Takes one waiting window message of this thread off its queue and dispatches it. False when there is none.
bool dispatch_one_input();

}  // namespace pv::platform
