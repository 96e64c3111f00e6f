// Text of bounded length: a record's fields, a table's columns, a line under construction.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace pv {

// Text of at most N - 1 bytes, always zero-terminated. The capacity is part of the type, so no caller can pass a wrong
// one. A copy copies the text in use, not the whole buffer.
template <std::size_t N>
class BoundedText {
 public:
  static_assert(N >= 1, "room for the terminating zero");
  static constexpr std::size_t kCapacity = N;  // bytes, terminator included

  constexpr BoundedText() { text_[0] = '\0'; }
  BoundedText(const BoundedText& other) noexcept { set(other.view()); }
  BoundedText& operator=(const BoundedText& other) noexcept {
    if (this != &other) set(other.view());
    return *this;
  }

  std::string_view view() const {
    // True by construction; said aloud because GCC 12 otherwise warns of copies beyond the end.
    if (size_ >= N) __builtin_unreachable();
    return {text_, size_};
  }
  operator std::string_view() const { return view(); }  // NOLINT: reading it as text is what it is for
  const char* c_str() const { return text_; }
  std::size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }
  void clear() { set({}); }

  // The whole text or nothing: on false the old text stays.
  [[nodiscard]] bool assign(std::string_view text) {
    if (text.size() >= N) return false;
    set(text);
    return true;
  }

  // Keeps what fits and returns the number of bytes dropped. `text` may be part of this text.
  std::size_t cut(std::string_view text) {
    set(text.substr(0, N - 1));
    return text.size() - size_;
  }

  // Appends what fits and returns the number of bytes dropped.
  std::size_t append_cut(std::string_view text) {
    const std::size_t kept = std::min(text.size(), N - 1 - size_);
    if (kept > 0) std::memmove(text_ + size_, text.data(), kept);
    size_ += kept;
    text_[size_] = '\0';
    return text.size() - kept;
  }

 private:
  void set(std::string_view text) {
    if (!text.empty()) std::memmove(text_, text.data(), text.size());
    size_ = text.size();
    text_[size_] = '\0';
  }

  std::size_t size_ = 0;
  char text_[N];
};

// Copies the source; true when it was copied whole, false when it was cut to the first N - 1 bytes.
template <std::size_t N>
bool copy_bounded(BoundedText<N>& destination, std::string_view source) {
  return destination.cut(source) == 0;
}

// Appends the source; true when it was appended whole, false when it was cut so that N - 1 bytes stand in all.
template <std::size_t N>
bool append_bounded(BoundedText<N>& destination, std::string_view source) {
  return destination.append_cut(source) == 0;
}

// Text that came from a file or a caller ends at its first NUL.
inline std::string_view until_nul(std::string_view bytes) {
  return bytes.substr(0, bytes.find('\0'));
}

}  // namespace pv
