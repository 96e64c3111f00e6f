// Sixteen bytes at a time. The compiler's own vectors: a few instructions where the processor has them, plain code
// where it has not.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pv {

static_assert(std::endian::native == std::endian::little, "the bits of a block stand in the order of its bytes");

using ByteBlock = unsigned char __attribute__((vector_size(16)));

// Whether a comparison holds, one bit a byte, the first byte lowest.
inline std::uint32_t bits_of(const ByteBlock& comparison) {
#ifdef __SSE2__
  using SignedBytes = char __attribute__((vector_size(16)));
  SignedBytes bytes;
  std::memcpy(&bytes, &comparison, sizeof bytes);
  return static_cast<std::uint32_t>(__builtin_ia32_pmovmskb128(bytes));
#else
  std::uint64_t halves[2];
  std::memcpy(halves, &comparison, sizeof halves);
  for (std::uint64_t& half : halves) half = ((half & 0x8080808080808080U) * 0x0002040810204081U) >> 56;
  return static_cast<std::uint32_t>(halves[0] | halves[1] << 8);
#endif
}

}  // namespace pv
