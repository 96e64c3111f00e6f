// Finds those of many pieces that occur anywhere in a text.
//
// Of each piece some windows of up to four bytes are remembered, so many side by side that one of them is met when the
// text is looked at in every first, second or fourth place only. A filter rules out most places of a text; at
// the others the pieces with that window are compared. Pieces that have too much in common for that are found by an
// automaton, whose time no text and no piece can change.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "filters/folded_text.h"
#include "filters/sightings.h"
#include "filters/token_automaton.h"
#include "filters/token_hash.h"

namespace pv {

// A few short pieces, of 3 or 4 bytes, found by three adjacent bytes each, 16 places at a time.
class ShortPieces {
 public:
  static constexpr std::size_t kMost = 12;
  static constexpr std::size_t kShortest = 3;  // bytes
  void add(std::string_view piece, std::uint32_t number);
  void find(const FoldedText& text, Sightings& found) const;
  std::size_t count() const { return count_; }

 private:
  static constexpr std::size_t kBytes = 3;
  struct Piece {
    alignas(16) unsigned char bytes[kBytes][16];  // each one as often as a block has bytes
    std::uint64_t text = 0;
    std::uint32_t length = 0;
    std::uint32_t offset = 0;  // of the three bytes
    std::uint32_t number = 0;
  };
  void compare(const FoldedText& text, std::size_t place, Sightings& found) const;

  std::array<Piece, kMost> pieces_;
  std::size_t count_ = 0;
};

// The windows, all of one width, that a set of pieces is known by.
class WindowTable {
 public:
  // `pieces` are folded, not empty, and outlive the table; `numbers` are theirs.
  WindowTable(std::span<const std::string_view> pieces, std::span<const std::uint32_t> numbers);

  void find(const FoldedText& text, Sightings& found) const;

  // The most pieces that have to be compared at one place.
  std::size_t most_alike() const { return most_alike_; }
  std::size_t memory() const;

 private:
  struct Window {
    std::string_view piece;
    std::uint64_t first_bytes = 0;  // of the piece: most comparisons end with them
    std::uint32_t number = 0;
    std::uint32_t offset = 0;  // in the piece
    std::uint32_t next = 0;    // of the same bytes, counted from 1; 0: none
  };
  struct Head {
    std::uint32_t value = 0;   // the bytes of a window
    std::uint32_t window = 0;  // the first one with them, counted from 1; 0: free
  };
  using Uses = std::unordered_map<std::uint32_t, std::uint32_t>;  // of the bytes of windows

  std::uint32_t value_at(const char* place) const { return load_4(place) & mask_; }
  static std::uint32_t first_hash_of(std::uint32_t value) { return value * 0x9E3779B1U; }
  static std::uint64_t hash_of(std::uint32_t value) { return value * kSecondHashFactor; }
  std::size_t head_of(std::uint32_t value) const;
  void add_windows(std::string_view piece, std::uint32_t number, Uses& uses);
  template <std::size_t kStep, bool kWhole>
  void find_in_steps(const FoldedText& text, Sightings& found) const;
  void compare(const FoldedText& text, std::size_t place, Sightings& found) const;

  std::uint32_t mask_;
  std::size_t width_;
  std::size_t step_;
  std::size_t most_alike_ = 0;
  unsigned first_filter_shift_;
  std::vector<unsigned char> first_filter_;  // by hash: 1 where a window has it; quick, and rules most places out
  HashFilter filter_{0};                     // nearly all of the others
  std::vector<Head> heads_;                  // open addressing; a power of two
  std::vector<Window> windows_;
};

// Immutable; any thread. Pieces are found in any letter case.
class SegmentFinder {
 public:
  // `pieces` are folded, distinct, not empty.
  explicit SegmentFinder(std::vector<std::string> pieces);
  SegmentFinder(const SegmentFinder&) = delete;
  SegmentFinder& operator=(const SegmentFinder&) = delete;

  // Adds the numbers of the pieces found.
  void find(const FoldedText& text, Sightings& found) const;
  std::size_t count() const { return pieces_.size(); }
  std::size_t memory() const;

 private:
  void use_automaton_if_crowded();
  std::vector<std::uint32_t> numbers_of(std::size_t shortest, std::size_t longest) const;
  void add_table(std::size_t shortest, std::size_t longest);
  bool add_few(std::size_t shortest, std::size_t longest, std::size_t most);

  std::vector<std::string> pieces_;
  ShortPieces few_;
  std::vector<std::uint32_t> singles_;  // pieces of a set with hardly any
  std::vector<WindowTable> tables_;
  std::optional<TokenAutomaton> automaton_;
};

}  // namespace pv
