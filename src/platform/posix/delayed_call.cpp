#include "platform/delayed_call.h"

#include <pthread.h>
#include <signal.h>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

namespace pv::platform {
namespace {

using Clock = std::chrono::steady_clock;

// Threads made during its life get no signals, which belong to the program that loaded us.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

struct DelayedCall::State {
  explicit State(void (*called)()) : function(called) {}

  void (*const function)();
  std::mutex cancelling;  // held for all of cancel(); taken before `mutex`
  std::mutex mutex;       // guards what follows
  std::condition_variable changed;
  std::optional<Clock::time_point> due;
  bool ending = false;
  std::thread thread;

  void run() {
    std::unique_lock lock(mutex);
    while (!ending) {
      if (!due) {
        changed.wait(lock);
      } else if (Clock::now() < *due) {
        changed.wait_until(lock, *due);
      } else {
        due.reset();
        lock.unlock();
        function();
        lock.lock();
      }
    }
  }
};

DelayedCall::DelayedCall(void (*function)()) : state_(std::make_unique<State>(function)) {}

DelayedCall::~DelayedCall() {
  cancel();
}

bool DelayedCall::request(std::chrono::milliseconds delay) {
  State& state = *state_;
  const std::lock_guard lock(state.mutex);
  if (state.ending) return false;
  state.due = Clock::now() + delay;
  if (state.thread.joinable()) {
    state.changed.notify_one();
    return true;
  }
  try {
    const SignalsBlocked blocked;
    state.thread = std::thread(&State::run, &state);
    return true;
  } catch (const std::system_error&) {
    state.due.reset();
    return false;
  }
}

void DelayedCall::cancel() {
  State& state = *state_;
  const std::lock_guard cancelling(state.cancelling);
  std::thread ended;
  {
    const std::lock_guard lock(state.mutex);
    state.due.reset();
    state.ending = state.thread.joinable();
    ended.swap(state.thread);
    state.changed.notify_one();
  }
  if (!ended.joinable()) return;
  ended.join();
  const std::lock_guard lock(state.mutex);
  state.ending = false;
}

}  // namespace pv::platform
