// Values that live as long as the process's memory.
#pragma once

#include <cstddef>
#include <new>

namespace pv {

// Holds a T that is never destroyed: at process exit, threads that the MTA leaves running may still use it. What the T
// owns must be released by hand at shutdown, or unloading the library leaks it. Meant for function-local statics.
template <class T>
class NeverDestroyed {
 public:
  NeverDestroyed() { ::new (static_cast<void*>(storage_)) T(); }
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;

  T& operator*() { return *std::launder(reinterpret_cast<T*>(storage_)); }

 private:
  alignas(T) std::byte storage_[sizeof(T)];
};

}  // namespace pv
