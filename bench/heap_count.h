// What the calling thread takes from the heap. The program's operator new and delete are replaced to count (aligned
// forms and malloc are not); each thread counts for itself, so that counting costs several threads no more than one.
#pragma once

#include <cstdint>

namespace pv::bench {

// Counts from its construction on.
class HeapCount {
 public:
  HeapCount();
  std::int64_t allocated() const;  // bytes allocated, freed or not
  std::int64_t peak() const;       // the most bytes in use at one time beyond those in use at the start

 private:
  std::int64_t allocated_at_start_;
  std::int64_t live_at_start_;
};

}  // namespace pv::bench
