#include "filters/folded_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "filters/byte_block.h"

namespace pv {

DelimiterSet::DelimiterSet(std::string_view delimiters) {
  for (std::size_t i = 0; i < delimiters.size() && count_ < kMost; ++i) {
    if (delimiters.find(delimiters[i]) != i) continue;
    std::memset(repeated_[count_++], delimiters[i], sizeof repeated_[0]);
  }
}

void FoldedText::reserve(std::size_t size) {
  const std::size_t needed = kFront + size + sizeof(ByteBlock) + kBack;
  if (buffer_.size() < needed) buffer_.resize(std::max(needed, buffer_.size() * 2));
  if (marks_.size() < size / 64 + 1) marks_.resize(std::max(size / 64 + 1, marks_.size() * 2));
}

// Puts the lower case of a block to `to`; the bits are those of its delimiters.
template <std::size_t kCount>
inline std::uint64_t fold_block(const ByteBlock& text, char* to, const unsigned char (*delimiters)[sizeof(ByteBlock)]) {
  ByteBlock block = text;
  ByteBlock found{};
#pragma GCC unroll 8  // Clang knows it too
  for (std::size_t i = 0; i < kCount; ++i) {
    ByteBlock delimiter;
    std::memcpy(&delimiter, delimiters[i], sizeof delimiter);
    found |= block == delimiter;
  }
  block |= ((block >= 'A') & (block <= 'Z')) & 0x20;
  std::memcpy(to, &block, sizeof block);
  return bits_of(found);
}

// Fewer than 8 bytes as a number, without reading further.
std::uint64_t load_few(std::string_view text) {
  const std::size_t size = text.size();
  const auto shifted = [](std::uint64_t value, std::size_t place) { return value << (8 * place); };
  if (size >= 4) return load_4(text.data()) | shifted(load_4(text.data() + size - 4), size - 4);
  const auto byte = [&](std::size_t i) { return shifted(static_cast<unsigned char>(text[i]), i); };
  return size == 0 ? 0 : byte(0) | byte(size / 2) | byte(size - 1);
}

// The last `size` % 16 bytes of a text, zeros behind them. Put together in registers: what is written to memory in
// pieces cannot be read back as a whole at once.
inline void load_rest(std::string_view text, ByteBlock& rest) {
  using Halves = std::uint64_t __attribute__((vector_size(16)));
  Halves halves{};
  const std::size_t size = text.size() % sizeof(ByteBlock);
  const char* const end = text.data() + text.size();
  if (text.size() < 8) {
    halves[0] = load_few(text);
  } else if (size <= 8) {
    halves[0] = load_8(end - 8) >> (64 - 8 * size);
  } else {
    halves[0] = load_8(end - size);
    halves[1] = load_8(end - 8) >> (128 - 8 * size);
  }
  std::memcpy(&rest, &halves, sizeof rest);
}

template <std::size_t kCount>
void FoldedText::fold_and_mark(std::string_view text, const DelimiterSet& delimiters) {
  char* const bytes = buffer_.data() + kFront;
  std::size_t at = 0;
  std::uint64_t ends = 0;
  ByteBlock block;
  for (; at + sizeof block <= text.size(); at += sizeof block) {
    std::memcpy(&block, text.data() + at, sizeof block);
    ends |= fold_block<kCount>(block, bytes + at, delimiters.repeated_) << (at % 64);
    if (at % 64 == 48) marks_[at / 64] = std::exchange(ends, 0);
  }
  if (at < text.size()) {
    load_rest(text, block);
    ends |= fold_block<kCount>(block, bytes + at, delimiters.repeated_) << (at % 64);
    at += sizeof block;
  }
  marks_[text.size() / 64] = ends;
  std::memset(bytes + at, 0, kBack);
}

// The number of delimiters is a constant in the loops, which makes them twice as fast.
void FoldedText::mark(std::string_view text, const DelimiterSet& delimiters) {
  using Marker = void (FoldedText::*)(std::string_view, const DelimiterSet&);
  static constexpr Marker kMarkers[] = {
      &FoldedText::fold_and_mark<0>, &FoldedText::fold_and_mark<1>, &FoldedText::fold_and_mark<2>,
      &FoldedText::fold_and_mark<3>, &FoldedText::fold_and_mark<4>, &FoldedText::fold_and_mark<5>,
      &FoldedText::fold_and_mark<6>, &FoldedText::fold_and_mark<7>, &FoldedText::fold_and_mark<8>,
  };
  static_assert(std::size(kMarkers) == DelimiterSet::kMost + 1);
  (this->*kMarkers[delimiters.count_])(text, delimiters);
}

void FoldedText::assign(std::string_view text, const DelimiterSet& delimiters) {
  reserve(text.size());
  size_ = text.size();
  mark(text, delimiters);
  const std::uint64_t end = std::uint64_t{1} << (size_ % 64);
  std::uint64_t& last = marks_[size_ / 64];
  last = (last & (end - 1)) | end;
  token_ends_ = {marks_.data(), size_ / 64 + 1};
}

}  // namespace pv
