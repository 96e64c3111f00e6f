// A text in lower case, laid out for matchers that read it in blocks, and where its delimiters stand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace pv {

// Case means ASCII letters; other bytes stay as they are.
constexpr char fold(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Eight bytes as a number, from anywhere.
inline std::uint64_t load_8(const char* bytes) {
  std::uint64_t value = 0;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}
inline std::uint32_t load_4(const char* bytes) {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

// The bytes at which tokens end: at most kMost, no letters.
class DelimiterSet {
 public:
  static constexpr std::size_t kMost = 8;
  explicit DelimiterSet(std::string_view delimiters);

 private:
  friend class FoldedText;
  alignas(16) unsigned char repeated_[kMost][16];  // each one as often as a block has bytes
  std::size_t count_ = 0;
};

// Keeps its memory for the next text.
class FoldedText {
 public:
  static constexpr std::size_t kFront = 16;  // bytes before the text that may be read
  static constexpr std::size_t kBack = 80;   // bytes behind it that may be read; zero

  void assign(std::string_view text, const DelimiterSet& delimiters);

  const char* data() const { return buffer_.data() + kFront; }
  std::size_t size() const { return size_; }
  std::string_view view() const { return {data(), size_}; }

  // One bit a byte of the text, set for a delimiter, and one behind the last byte: there the last token ends.
  std::span<const std::uint64_t> token_ends() const { return token_ends_; }

 private:
  void reserve(std::size_t size);
  template <std::size_t kCount>
  void fold_and_mark(std::string_view text, const DelimiterSet& delimiters);
  void mark(std::string_view text, const DelimiterSet& delimiters);

  std::vector<char> buffer_;
  std::vector<std::uint64_t> marks_;
  std::span<const std::uint64_t> token_ends_;
  std::size_t size_ = 0;
};

}  // namespace pv
