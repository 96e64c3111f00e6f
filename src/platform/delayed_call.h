// A call of a function some time later, on a thread of the agent's or the system's own.
#pragma once

#include <chrono>
#include <memory>

namespace pv::platform {

// Any thread may use it. The thread is there from the first request to cancel(); no signal of the program is handled on
// it.
class DelayedCall {
 public:
  explicit DelayedCall(void (*function)());  // must throw nothing
  ~DelayedCall();                            // cancels
  DelayedCall(const DelayedCall&) = delete;
  DelayedCall& operator=(const DelayedCall&) = delete;

  // Calls the function once, after `delay`; an earlier request that was not yet carried out is forgotten. False when
  // the system has no thread to give. The function may request the next call.
  bool request(std::chrono::milliseconds delay);

  // Forgets a request and waits for the end of a call under way. Until the next request no call begins. Not from the
  // function, and not under a lock that the function needs. Safe under the loader's lock.
  void cancel();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pv::platform
