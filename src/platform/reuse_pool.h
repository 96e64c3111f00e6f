// Objects that threads use for a while and then leave to the next user, so that their memory is there already. A thread
// gets back what it used last, as far as possible: that is still in its processor's cache.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

namespace pv::platform {

// A number of the calling thread, small and its own.
inline std::size_t thread_number() {
  static constinit std::atomic<std::size_t> next{1};
  static constinit thread_local std::size_t number = 0;
  if (number == 0) number = next.fetch_add(1, std::memory_order_relaxed);
  return number;
}

// Any thread; takes no lock. Holds up to kPlaces objects. It has no destructor, as messages may outlive it when the
// process ends: its owner calls clear().
template <typename T>
class ReusePool {
 public:
  static constexpr std::size_t kPlaces = 64;

  constexpr ReusePool() = default;
  ReusePool(const ReusePool&) = delete;
  ReusePool& operator=(const ReusePool&) = delete;

  // nullptr: all are in use.
  std::unique_ptr<T> take() noexcept {
    const std::size_t own = thread_number();
    for (std::size_t i = 0; i < kPlaces; ++i) {
      std::atomic<T*>& place = places_[(own + i) % kPlaces].object;
      if (place.load(std::memory_order_relaxed) == nullptr) continue;
      if (T* const object = place.exchange(nullptr, std::memory_order_acquire)) return std::unique_ptr<T>(object);
    }
    return nullptr;
  }

  // One that finds no place is destroyed.
  void give_back(std::unique_ptr<T> object) noexcept {
    const std::size_t own = thread_number();
    for (std::size_t i = 0; i < kPlaces && object != nullptr; ++i) {
      T* free = nullptr;
      std::atomic<T*>& place = places_[(own + i) % kPlaces].object;
      if (place.compare_exchange_strong(free, object.get(), std::memory_order_release, std::memory_order_relaxed)) {
        static_cast<void>(object.release());
      }
    }
  }

  void clear() noexcept {
    for (Place& place : places_) delete place.object.exchange(nullptr, std::memory_order_acquire);
  }

 private:
  struct alignas(64) Place {  // a line of the cache for each thread
    std::atomic<T*> object{nullptr};
  };
  std::array<Place, kPlaces> places_;
};

}  // namespace pv::platform
