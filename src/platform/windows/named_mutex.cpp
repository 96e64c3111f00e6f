// The system's named mutex, in the session's name space. It lives as long as a process has it open. The system lets a
// thread lock its mutex again; that is refused here for each object, so that a writer that calls itself is found on
// every system alike.
#include "platform/named_mutex.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <new>
#include <string>

namespace pv::platform {
namespace {

constexpr std::size_t kMaxName = 63;  // bytes of a mutex's name
// Longer waits are as good as endless, and the number beyond means "endless" to the system.
constexpr std::chrono::milliseconds kMaxLimit{INFINITE - 1};

bool is_valid_name(std::string_view name) {
  const auto allowed = [](char c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return letter || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
  };
  return !name.empty() && name.size() <= kMaxName && std::all_of(name.begin(), name.end(), allowed);
}

// A mutex of this object alone when the name is not valid, or belongs to something else or to somebody who shares
// nothing.
HANDLE open_or_create(std::string_view name) {
  if (is_valid_name(name)) {
    const std::string terminated(name);
    if (const HANDLE mutex = ::CreateMutexA(nullptr, FALSE, terminated.c_str())) return mutex;
    // Another user's mutex may allow its use though not everything that creating asks for.
    if (const HANDLE mutex = ::OpenMutexA(SYNCHRONIZE, FALSE, terminated.c_str())) return mutex;
  }
  return ::CreateMutexA(nullptr, FALSE, nullptr);
}

// Given once in a process: the system's thread numbers return, and the mutex of a dead thread would seem to be held by
// its successor.
std::uint64_t mark_of_thread() {
  static constinit std::atomic<std::uint64_t> last_mark = 0;
  static constinit thread_local std::uint64_t mark = 0;
  if (mark == 0) mark = ++last_mark;
  return mark;
}

}  // namespace

struct NamedMutex::State {
  explicit State(std::string_view name) : handle(open_or_create(name)) {}
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() {
    if (handle != nullptr) ::CloseHandle(handle);
  }

  HANDLE handle;
  std::atomic<std::uint64_t> owner = 0;  // mark of the thread that holds the mutex through this object
};

NamedMutex::NamedMutex(std::string_view name) : state_(new (std::nothrow) State(name)) {}

NamedMutex::~NamedMutex() = default;

bool NamedMutex::lock_for(std::chrono::milliseconds limit) {
  if (state_ == nullptr || state_->handle == nullptr) return false;
  const std::uint64_t self = mark_of_thread();
  if (state_->owner.load(std::memory_order_relaxed) == self) return false;
  const auto wait = std::clamp(limit, std::chrono::milliseconds(0), kMaxLimit).count();
  const DWORD result = ::WaitForSingleObject(state_->handle, static_cast<DWORD>(wait));
  // What the mutex guards is a report line at most half written; the next one begins behind it.
  if (result != WAIT_OBJECT_0 && result != WAIT_ABANDONED) return false;
  state_->owner.store(self, std::memory_order_relaxed);
  return true;
}

void NamedMutex::unlock() {
  if (state_ == nullptr || state_->handle == nullptr) return;
  state_->owner.store(0, std::memory_order_relaxed);
  ::ReleaseMutex(state_->handle);
}

void* NamedMutex::native_handle() {
  return state_ == nullptr ? nullptr : state_->handle;
}

}  // namespace pv::platform
