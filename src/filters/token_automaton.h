// Finds those of many words that stand in a text between delimiters.
//
// Such a word begins where a token of the text begins and ends where one ends, so text and words are compared token by
// token: "free offer" is the token "free" and, behind a blank, the token "offer". The words form a tree of tokens, and
// each node knows where to go on when the text leaves the tree (an Aho-Corasick automaton with tokens for letters). So
// each token of the text is looked at once, however many words there are and however much they have in common.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "filters/folded_text.h"
#include "filters/sightings.h"
#include "filters/token_hash.h"

namespace pv {

enum class Tokens {
  kBetweenDelimiters,
  kSingleBytes,  // every byte is a token: the words are found anywhere
};

// Words are found in any letter case. Immutable; any thread.
class TokenAutomaton {
 public:
  // `numbers` are the words' own.
  TokenAutomaton(std::span<const std::string_view> words, std::span<const std::uint32_t> numbers,
                 std::string_view delimiters, Tokens tokens);

  // Adds the numbers of the words found, with their first occurrence between delimiters.
  void find(const FoldedText& text, Sightings& found) const;

  // The same for the words with which the text begins, whatever follows them; of single bytes only.
  void find_at_start(const FoldedText& text, Sightings& found) const;

  std::size_t memory() const;

 private:
  static constexpr std::uint32_t kRoot = 0;
  static constexpr std::uint32_t kNone = 0xFFFFFFFF;
  struct Node {
    std::uint64_t first_bytes = 0;  // of the token: short ones need no look at folded_
    std::uint32_t token_at = 0;
    std::uint32_t token_length = 0;
    std::uint32_t parent = kRoot;
    std::uint32_t fail = kRoot;    // the longest node that is an end of this one
    std::uint32_t report = kRoot;  // the first node with a word among this one, its `fail`, and so on
    std::uint32_t resume = kRoot;  // the first one with children
    std::uint32_t word = kNone;    // in word_at_
    std::uint32_t word_length = 0;
    std::uint32_t children = 0;  // a bit for each, by its hash; those of different children may be the same
    char delimiter = '\0';       // before the token; children of the root have none
  };
  struct Child {
    std::uint32_t tag = 0;
    std::uint32_t node = kRoot;  // kRoot: free
  };
  struct Token {
    std::string_view text;
    std::uint64_t hash = 0;
    char delimiter = '\0';
  };

  std::string_view folded_word(std::uint32_t word) const;
  template <typename Visit>
  void for_each_token(std::uint32_t word, Visit visit) const;
  std::size_t token_end(std::string_view word, std::size_t start) const;
  void reserve(std::span<const std::string_view> words);
  void add_word(std::uint32_t word);
  std::uint32_t add_child(std::uint32_t parent, const Token& token);
  std::uint32_t child(std::uint32_t parent, const Token& token) const;
  bool is_child(std::uint32_t node, std::uint32_t parent, const Token& token) const;
  std::vector<std::uint32_t> nodes_by_depth() const;
  Token token_of(const Node& node) const;
  void link(std::uint32_t node);
  static std::size_t next_end(std::span<const std::uint64_t> ends, std::size_t from);
  std::uint64_t first_starts(std::span<const std::uint64_t> ends, std::size_t word) const;
  std::size_t follow(const FoldedText& text, std::size_t start, std::size_t end, Sightings& found) const;
  void find_single_bytes(const FoldedText& text, Sightings& found) const;
  std::uint32_t next_state(std::uint32_t state, const Token& token) const;
  bool report(const Node& node, std::size_t end, Sightings& found) const;
  std::uint32_t enter(std::uint32_t node, std::size_t end, Sightings& found) const;

  std::array<bool, 256> ends_token_{};  // by byte: the delimiters
  Tokens tokens_;
  std::string folded_;  // the words one after the other, with room before and behind them
  std::vector<std::uint32_t> word_at_;
  std::vector<std::uint32_t> numbers_;    // by word
  std::vector<std::uint32_t> same_word_;  // the next word of the same letters, or kNone
  std::vector<Node> nodes_;
  std::vector<Child> children_;     // open addressing; a power of two
  HashFilter first_tokens_{0};      // of the children of the root
  std::size_t shortest_first_ = 3;  // bytes of the shortest of them, or 3
};

}  // namespace pv
