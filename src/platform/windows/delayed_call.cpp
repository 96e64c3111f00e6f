// A timer of the system's thread pool. Waiting for its call to end needs no thread to end, which the loader's lock
// would prevent. When the process ends, the pool's threads are gone before the library hears of it, perhaps in the
// middle of a call: then nothing is waited for.
#include "platform/delayed_call.h"

#include <windows.h>

#include <mutex>

namespace pv::platform {
namespace {

bool process_is_ending() {
  using ShutdownInProgress = BOOLEAN(NTAPI*)();
  const HMODULE system = ::GetModuleHandleA("ntdll.dll");
  if (system == nullptr) return false;
  const auto ask = reinterpret_cast<ShutdownInProgress>(
      reinterpret_cast<void*>(::GetProcAddress(system, "RtlDllShutdownInProgress")));
  return ask != nullptr && ask() != 0;
}

void set_timer(PTP_TIMER timer, std::chrono::milliseconds delay) {
  const LONGLONG ticks = -10'000 * static_cast<LONGLONG>(delay.count());  // of 100 ns; negative: from now on
  FILETIME due;
  due.dwLowDateTime = static_cast<DWORD>(ticks & 0xFFFFFFFF);
  due.dwHighDateTime = static_cast<DWORD>(static_cast<ULONGLONG>(ticks) >> 32);
  ::SetThreadpoolTimer(timer, &due, 0, 0);
}

}  // namespace

struct DelayedCall::State {
  explicit State(void (*called)()) : function(called) {}

  void (*const function)();
  std::mutex mutex;  // guards what follows
  PTP_TIMER timer = nullptr;
  bool ending = false;

  static void CALLBACK run(PTP_CALLBACK_INSTANCE, void* state, PTP_TIMER) { static_cast<State*>(state)->function(); }
};

DelayedCall::DelayedCall(void (*function)()) : state_(std::make_unique<State>(function)) {}

DelayedCall::~DelayedCall() {
  cancel();
}

bool DelayedCall::request(std::chrono::milliseconds delay) {
  State& state = *state_;
  const std::lock_guard lock(state.mutex);
  if (state.ending) return false;
  if (state.timer == nullptr) state.timer = ::CreateThreadpoolTimer(&State::run, &state, nullptr);
  if (state.timer == nullptr) return false;
  set_timer(state.timer, delay);
  return true;
}

void DelayedCall::cancel() {
  State& state = *state_;
  if (process_is_ending()) return;
  PTP_TIMER ended = nullptr;
  {
    const std::lock_guard lock(state.mutex);
    state.ending = true;
    std::swap(ended, state.timer);
  }
  if (ended != nullptr) {
    ::SetThreadpoolTimer(ended, nullptr, 0, 0);
    ::WaitForThreadpoolTimerCallbacks(ended, TRUE);
    ::CloseThreadpoolTimer(ended);
  }
  const std::lock_guard lock(state.mutex);
  state.ending = false;
}

}  // namespace pv::platform
