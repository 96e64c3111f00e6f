// A window of the calling thread that nobody sees.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <utility>

namespace pv::test {

class MessageWindow {
 public:
  // Calls `on_message` for every message that is dispatched to the window, but for those of its creation and end.
  explicit MessageWindow(std::function<void(UINT message)> on_message) : on_message_(std::move(on_message)) {
    WNDCLASSA window_class{};
    window_class.lpfnWndProc = &take;
    window_class.hInstance = ::GetModuleHandleA(nullptr);
    window_class.lpszClassName = kClass;
    ::RegisterClassA(&window_class);  // fails from the second window on
    window_ = ::CreateWindowExA(0, kClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, window_class.hInstance, nullptr);
    EXPECT_NE(window_, nullptr);
    ::SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~MessageWindow() {
    ::SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
    ::DestroyWindow(window_);
  }
  MessageWindow(const MessageWindow&) = delete;
  MessageWindow& operator=(const MessageWindow&) = delete;

  // From any thread.
  void post(UINT message, WPARAM parameter = 0) const { EXPECT_TRUE(::PostMessageA(window_, message, parameter, 0)); }

 private:
  static constexpr char kClass[] = "PvTestWindow";

  static LRESULT CALLBACK take(HWND window, UINT message, WPARAM parameter, LPARAM other) {
    const auto* self = reinterpret_cast<const MessageWindow*>(::GetWindowLongPtrA(window, GWLP_USERDATA));
    if (self == nullptr) return ::DefWindowProcA(window, message, parameter, other);
    self->on_message_(message);
    return 0;
  }

  std::function<void(UINT message)> on_message_;
  HWND window_ = nullptr;
};

}  // namespace pv::test
