#include "platform/event.h"

#include <windows.h>

namespace pv::platform {

// Without a handle, when the system is out of them, every wait ends at once as failed.
struct Event::State {
  State() = default;
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() {
    if (handle != nullptr) ::CloseHandle(handle);
  }

  HANDLE handle = ::CreateEventA(nullptr, FALSE, FALSE, nullptr);
};

Event::Event() : state_(std::make_unique<State>()) {}
Event::~Event() = default;

void Event::signal() {
  ::SetEvent(state_->handle);
}

WaitEnd Event::wait_or_input(std::uint32_t timeout_ms) {
  if (state_->handle == nullptr) return WaitEnd::kOther;
  switch (::MsgWaitForMultipleObjects(1, &state_->handle, FALSE, timeout_ms, QS_ALLINPUT)) {
    case WAIT_OBJECT_0:
      return WaitEnd::kSignalled;
    case WAIT_OBJECT_0 + 1:
      return WaitEnd::kInput;
    default:
      return WaitEnd::kOther;
  }
}

bool dispatch_one_input() {
  MSG message{};
  if (!::PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) return false;
  ::TranslateMessage(&message);
  ::DispatchMessageA(&message);
  return true;
}

}  // namespace pv::platform
