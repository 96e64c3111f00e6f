// Memory for one program's tree: taken piece by piece, given back at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <type_traits>

#include "vbscript/limits.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

// What is made here lives as long as the arena. Not copied, not shared between threads. The first chunk holds the tree
// of a usual script, so that compiling one costs one allocation.
class Arena {
 public:
  Arena() = default;
  Arena(const Arena&) = delete;
  Arena& operator=(const Arena&) = delete;
  ~Arena() {
    while (chunks_ != nullptr) {
      Chunk* const next = chunks_->next;
      ::operator delete(chunks_);
      chunks_ = next;
    }
  }

  // A Node, value-initialised: pointers are null, numbers 0.
  template <typename Node>
  Node* make() {
    static_assert(std::is_trivially_destructible_v<Node>, "nobody calls its destructor");
    return ::new (take(sizeof(Node))) Node();
  }

  // Room for a text of `size` bytes, not initialised.
  char* make_text(std::size_t size) { return static_cast<char*>(take(size)); }

  std::string_view copy(std::string_view text) {
    char* const bytes = make_text(text.size());
    std::copy(text.begin(), text.end(), bytes);
    return {bytes, text.size()};
  }

 private:
  static constexpr std::size_t kFirstChunk = std::size_t{16} << 10U;
  static constexpr std::size_t kLargestChunk = std::size_t{1} << 20U;

  struct alignas(std::max_align_t) Chunk {
    Chunk* next;
  };

  // Throws CompileError 1001 beyond kMaxTreeBytes.
  void* take(std::size_t size) {
    size = (size + alignof(std::max_align_t) - 1) & ~(alignof(std::max_align_t) - 1);
    if (size > static_cast<std::size_t>(end_ - next_)) add_chunk(size);
    void* const taken = next_;
    next_ += size;
    return taken;
  }

  void add_chunk(std::size_t size) {
    if (total_ + size > kMaxTreeBytes) throw CompileError{1001, {}};
    const std::size_t room = std::max(size, std::clamp(total_, kFirstChunk, kLargestChunk));
    auto* const chunk = static_cast<Chunk*>(::operator new(sizeof(Chunk) + room));
    chunk->next = chunks_;
    chunks_ = chunk;
    next_ = reinterpret_cast<std::byte*>(chunk + 1);
    end_ = next_ + room;
    total_ += room;
  }

  Chunk* chunks_ = nullptr;
  std::byte* next_ = nullptr;
  std::byte* end_ = nullptr;
  std::size_t total_ = 0;
};

}  // namespace pv::vbscript
