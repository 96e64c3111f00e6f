// A mutex that every process of the same user shares by its name.
#pragma once

#include <chrono>
#include <memory>
#include <string_view>

namespace pv::platform {

// Lives in shared memory until the system restarts; on Windows it is the system's mutex of that name. Where it cannot
// be had, or the name is not valid, each object is a mutex of its own for the threads that share it.
class NamedMutex {
 public:
  // `name` has at most 63 bytes of letters, digits, '-', '_' and '.'. Never fails; a mutex that cannot be made at all
  // refuses every lock.
  explicit NamedMutex(std::string_view name);
  ~NamedMutex();  // must not be held by this process's threads
  NamedMutex(const NamedMutex&) = delete;
  NamedMutex& operator=(const NamedMutex&) = delete;

  // False after `limit`, or when the mutex is unusable. A holder that died, thread or process, counts as released: the
  // mutex is then locked as usual. Not recursive.
  [[nodiscard]] bool lock_for(std::chrono::milliseconds limit);
  void unlock();

  // The system's mutex, for a plug-in that is told of it; nullptr when unusable. Owned by this object.
  void* native_handle();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pv::platform
