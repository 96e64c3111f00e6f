// What a matcher has seen in one text: numbered things, each once, in the order in which they were first seen.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pv {

struct Sighting {
  std::uint32_t number = 0;
  std::uint32_t start = 0;  // of its first occurrence
  std::uint32_t end = 0;
};

// Keeps its memory for the next text.
class Sightings {
 public:
  // Forgets what was seen and makes room for the numbers below `count`.
  void start(std::size_t count) {
    for (const Sighting& sighting : seen_) bits_[sighting.number / 64] = 0;
    seen_.clear();
    if (bits_.size() * 64 < count) bits_.resize(count / 64 + 1);
  }

  // False when the number was seen before.
  bool add(std::uint32_t number, std::size_t start, std::size_t end) {
    std::uint64_t& bits = bits_[number / 64];
    const std::uint64_t bit = std::uint64_t{1} << (number % 64);
    if ((bits & bit) != 0) return false;
    bits |= bit;
    seen_.push_back({number, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end)});
    return true;
  }

  const std::vector<Sighting>& seen() const { return seen_; }

 private:
  std::vector<std::uint64_t> bits_;  // zero but for what stands in seen_
  std::vector<Sighting> seen_;
};

}  // namespace pv
