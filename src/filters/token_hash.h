// Hashes of the tokens of folded texts and words, and a filter that rules most tokens out.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "filters/folded_text.h"

namespace pv {

inline constexpr std::uint64_t kHashFactor = 0x9E3779B97F4A7C15U;
inline constexpr std::uint64_t kSecondHashFactor = 0xD6E8FEB86659FD93U;

// The bytes of a load that belong to a token of 0 to 8 bytes which begins, or ends, with the load.
inline constexpr std::uint64_t kFirstBytes[] = {
    0, 0xFF, 0xFFFF, 0xFFFFFF, 0xFFFFFFFF, 0xFFFFFFFFFF, 0xFFFFFFFFFFFF, 0xFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF};

inline std::uint64_t mixed(std::uint64_t first, std::uint64_t last, std::size_t length) {
  const std::uint64_t hash = (first ^ (last * kHashFactor) ^ length) * kSecondHashFactor;
  return hash ^ (hash >> 32);
}

inline std::uint64_t hash_long_token(const char* token, std::size_t length) {
  std::uint64_t hash = 0;
  for (std::size_t i = 0; i + 8 < length; i += 8) hash = std::rotl((hash ^ load_8(token + i)) * kHashFactor, 29);
  return mixed(hash, load_8(token + length - 8), length);
}

// 8 bytes from the token's start on are read.
inline std::uint64_t first_bytes(const char* token, std::size_t length) {
  return load_8(token) & kFirstBytes[std::min<std::size_t>(length, 8)];
}

// Every byte counts. 8 bytes before and behind the token are read.
inline std::uint64_t hash_token(const char* token, std::size_t length) {
  if (length > 16) [[unlikely]]
    return hash_long_token(token, length);
  const std::size_t used = std::min<std::size_t>(length, 8);
  const std::uint64_t first = load_8(token) & kFirstBytes[used];
  const std::uint64_t last = load_8(token + length - 8) & ~kFirstBytes[8 - used];
  return mixed(first, last, length);
}

// A weaker number, quickly made, for ruling tokens out: the first 8 bytes and the length count. 8 bytes from the
// token's start on are read.
inline std::uint64_t token_mark(const char* token, std::size_t length) {
  return (first_bytes(token, length) ^ length) * kHashFactor;
}
// Eight bytes from the start of either are read, and eight at its end.
inline bool equal_tokens(const char* a, const char* b, std::size_t length) {
  if (length <= 8) return first_bytes(a, length) == first_bytes(b, length);
  for (std::size_t i = 0; i + 8 < length; i += 8) {
    if (load_8(a + i) != load_8(b + i)) return false;
  }
  return load_8(a + length - 8) == load_8(b + length - 8);
}

// Whether a hash may be one of those added; a few in a hundred of the others passes too.
class HashFilter {
 public:
  explicit HashFilter(std::size_t hashes)
      : shift_(64 - static_cast<unsigned>(std::bit_width(std::max<std::size_t>(hashes, 512) * 80))),
        bits_((std::size_t{1} << (64 - shift_)) / 64) {}
  void add(std::uint64_t hash) {
    const std::size_t place = place_of(hash);
    bits_[place / 64] |= std::uint64_t{1} << (place % 64);
  }
  // For many questions in a row.
  struct View {
    const std::uint64_t* bits;
    unsigned shift;
    bool may_hold(std::uint64_t hash) const {
      const std::size_t place = static_cast<std::size_t>(hash >> shift);
      return (bits[place / 64] >> (place % 64) & 1) != 0;
    }
  };
  View view() const { return {bits_.data(), shift_}; }
  bool may_hold(std::uint64_t hash) const { return view().may_hold(hash); }
  std::size_t memory() const { return bits_.size() * sizeof bits_[0]; }

 private:
  std::size_t place_of(std::uint64_t hash) const { return static_cast<std::size_t>(hash >> shift_); }

  unsigned shift_;
  std::vector<std::uint64_t> bits_;
};

}  // namespace pv
