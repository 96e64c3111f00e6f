#include "filters/folded_search.h"

#include <array>
#include <bit>
#include <cstdint>
#include <iterator>

#include "filters/byte_block.h"

namespace pv {
namespace {

// Comparisons that may fail before the search changes to a way that compares nothing twice. Few texts come to that.
constexpr int kComparisons = 16;

constexpr std::uint32_t kFactor = 16777619;

// Compares sums of the bytes, each of which comes from the one before it (Rabin-Karp).
bool occurs_in_alike(std::string_view text, std::string_view piece) {
  std::uint32_t wanted = 0, sum = 0, leaving = 1;
  for (std::size_t i = 0; i < piece.size(); ++i) {
    wanted = wanted * kFactor + static_cast<unsigned char>(piece[i]);
    sum = sum * kFactor + static_cast<unsigned char>(text[i]);
    leaving *= kFactor;
  }
  for (std::size_t end = piece.size();; ++end) {
    if (sum == wanted && text.substr(end - piece.size(), piece.size()) == piece) return true;
    if (end == text.size()) return false;
    sum = sum * kFactor + static_cast<unsigned char>(text[end]) -
          leaving * static_cast<unsigned char>(text[end - piece.size()]);
  }
}

}  // namespace

std::uint32_t commonness(std::string_view piece) {
  // Of a thousand bytes of mail, a quarter of how many are this one; at least 1.
  constexpr std::array<std::uint8_t, 256> kShare = [] {
    std::array<std::uint8_t, 256> share;
    share.fill(1);
    constexpr std::string_view kBytes = " etaoinsrhldcumpfgywbvk";
    constexpr std::uint8_t kShares[] = {38, 23, 16, 15, 14, 13, 13, 12, 12, 9, 8, 7, 6, 6, 5, 4, 4, 4, 3, 3, 3, 2, 2};
    static_assert(std::size(kShares) == kBytes.size());
    for (std::size_t i = 0; i < kBytes.size(); ++i) share[static_cast<unsigned char>(kBytes[i])] = kShares[i];
    return share;
  }();
  std::uint32_t product = 1;
  for (const char byte : piece) product *= kShare[static_cast<unsigned char>(byte)];
  return product;
}

bool occurs_in(const FoldedText& text, std::size_t size, std::string_view piece) {
  if (piece.size() > size) return false;
  ByteBlock first, last;
  std::memset(&first, piece.front(), sizeof first);
  std::memset(&last, piece.back(), sizeof last);
  const std::size_t starts = size - piece.size() + 1;
  int comparisons = 0;
  for (std::size_t at = 0; at < starts; at += sizeof(ByteBlock)) {
    ByteBlock here, behind;
    std::memcpy(&here, text.data() + at, sizeof here);
    std::memcpy(&behind, text.data() + at + piece.size() - 1, sizeof behind);
    const ByteBlock both = (here == first) & (behind == last);
    for (std::uint32_t bits = bits_of(both); bits != 0; bits &= bits - 1) {
      const std::size_t start = at + static_cast<std::size_t>(std::countr_zero(bits));
      if (start >= starts) return false;
      if (text.view().substr(start, piece.size()) == piece) return true;
      if (++comparisons == kComparisons) return occurs_in_alike(text.view().substr(start, size - start), piece);
    }
  }
  return false;
}

}  // namespace pv
