#include "heap_count.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace pv::bench {
namespace {

struct ThreadHeap {
  std::int64_t allocated = 0;
  std::int64_t live = 0;  // below 0 on a thread that frees what others allocated
  std::int64_t peak = 0;
};
constinit thread_local ThreadHeap heap;

// The size stands in front of each block.
constexpr std::size_t kFront = alignof(std::max_align_t);
static_assert(kFront >= sizeof(std::size_t));

void* allocate(std::size_t size) {
  auto* const front = static_cast<std::size_t*>(std::malloc(kFront + size));
  if (front == nullptr) return nullptr;
  *front = size;
  heap.allocated += static_cast<std::int64_t>(size);
  heap.live += static_cast<std::int64_t>(size);
  heap.peak = std::max(heap.peak, heap.live);
  return reinterpret_cast<char*>(front) + kFront;
}

void release(void* block) {
  if (block == nullptr) return;
  void* const front = static_cast<char*>(block) - kFront;
  heap.live -= static_cast<std::int64_t>(*static_cast<std::size_t*>(front));
  std::free(front);
}

}  // namespace

HeapCount::HeapCount() : allocated_at_start_(heap.allocated), live_at_start_(heap.live) {
  heap.peak = heap.live;
}
std::int64_t HeapCount::allocated() const {
  return heap.allocated - allocated_at_start_;
}
std::int64_t HeapCount::peak() const {
  return heap.peak - live_at_start_;
}

}  // namespace pv::bench

void* operator new(std::size_t size) {
  if (void* const block = pv::bench::allocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return pv::bench::allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return pv::bench::allocate(size);
}
void operator delete(void* block) noexcept {
  pv::bench::release(block);
}
void operator delete[](void* block) noexcept {
  pv::bench::release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  pv::bench::release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  pv::bench::release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  pv::bench::release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  pv::bench::release(block);
}
