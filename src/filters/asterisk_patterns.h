// Which of many patterns with asterisks may match a text. Every pattern has a key, a part that must occur for it to
// match: the text before its first asterisk, with which the text must begin, or one of the parts behind it, which must
// occur anywhere. Only patterns whose key is there are worth a closer look.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "filters/folded_text.h"
#include "filters/segment_finder.h"
#include "filters/sightings.h"
#include "filters/token_automaton.h"
#include "filters/token_hash.h"

namespace pv {

// Immutable; any thread.
class AsteriskPatterns {
 public:
  // `numbers` are the patterns' own; each pattern holds an asterisk.
  AsteriskPatterns(std::span<const std::string_view> patterns, std::span<const std::uint32_t> numbers);

  // Calls `visit(number)` for each pattern that may match. `scratch` is for use in here.
  template <typename Visit>
  void find(const FoldedText& text, Sightings& scratch, Visit visit) const {
    for (const std::uint32_t number : without_key_) visit(number);
    if (prefixes_ && prefix_may_begin(text)) {
      scratch.start(largest_number_ + 1);
      prefixes_->find_at_start(text, scratch);
      for (const Sighting& prefix : scratch.seen()) visit(prefix.number);
    }
    if (!pieces_) return;
    scratch.start(pieces_->count());
    pieces_->find(text, scratch);
    for (const Sighting& piece : scratch.seen()) {
      for (std::uint32_t i = piece_users_at_[piece.number]; i < piece_users_at_[piece.number + 1]; ++i) {
        visit(piece_users_[i]);
      }
    }
  }

  std::size_t memory() const;

 private:
  bool prefix_may_begin(const FoldedText& text) const {
    for (std::size_t length = shortest_prefix_; length <= kFirstBytesUsed; ++length) {
      if (first_bytes_.may_hold(token_mark(text.data(), length))) return true;
    }
    return false;
  }

  static constexpr std::size_t kFirstBytesUsed = 4;
  struct Key {
    std::string text;  // folded; empty: the pattern has none
    bool is_prefix = false;
  };
  struct Counts;

  static Key key_of(std::string_view pattern, const Counts& counts);
  void add_prefixes(std::span<const std::string> prefixes, std::span<const std::uint32_t> numbers);
  void add_pieces(const std::map<std::string, std::vector<std::uint32_t>>& users);

  std::size_t largest_number_ = 0;
  std::size_t shortest_prefix_ = kFirstBytesUsed;  // bytes, at most those used
  std::vector<std::uint32_t> without_key_;
  std::optional<TokenAutomaton> prefixes_;
  HashFilter first_bytes_{0};  // of the prefixes: the first four, or as many as there are
  std::optional<SegmentFinder> pieces_;
  std::vector<std::uint32_t> piece_users_at_;  // by piece: where its patterns begin in piece_users_
  std::vector<std::uint32_t> piece_users_;
};

}  // namespace pv
