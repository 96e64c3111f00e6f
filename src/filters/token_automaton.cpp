#include "filters/token_automaton.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

namespace pv {
namespace {

constexpr std::size_t kRoom = 16;  // hash_token reads so far beyond a token

std::uint64_t child_key(std::uint32_t parent, std::uint64_t hash, char delimiter) {
  if (parent == 0) return hash;
  const std::uint64_t place = std::uint64_t{parent} << 8 | static_cast<unsigned char>(delimiter);
  const std::uint64_t key = (hash ^ place * kHashFactor) * kSecondHashFactor;
  return key ^ (key >> 32);
}

std::uint32_t child_bit(std::uint64_t hash) {
  return std::uint32_t{1} << (hash % 32);
}

std::uint32_t tag_of(std::uint64_t key) {
  return static_cast<std::uint32_t>(key >> 32);
}

}  // namespace

std::string_view TokenAutomaton::folded_word(std::uint32_t word) const {
  return std::string_view(folded_).substr(word_at_[word], word_at_[word + 1] - word_at_[word]);
}

std::size_t TokenAutomaton::token_end(std::string_view word, std::size_t start) const {
  while (start < word.size() && !ends_token_[static_cast<unsigned char>(word[start])]) ++start;
  return start;
}

template <typename Visit>
void TokenAutomaton::for_each_token(std::uint32_t number, Visit visit) const {
  const std::string_view word = folded_word(number);
  const bool bytes = tokens_ == Tokens::kSingleBytes;
  std::size_t start = 0;
  while (start < word.size() || !bytes) {
    const std::size_t end = bytes ? start + 1 : token_end(word, start);
    const char delimiter = bytes || start == 0 ? '\0' : word[start - 1];
    const std::string_view text = word.substr(start, end - start);
    visit(Token{text, hash_token(text.data(), text.size()), delimiter});
    if (!bytes && end == word.size()) return;
    start = bytes ? end : end + 1;
  }
}

void TokenAutomaton::reserve(std::span<const std::string_view> words) {
  folded_.assign(kRoom, '\0');
  word_at_.reserve(words.size() + 1);
  for (const std::string_view word : words) {
    word_at_.push_back(static_cast<std::uint32_t>(folded_.size()));
    std::transform(word.begin(), word.end(), std::back_inserter(folded_), fold);
  }
  word_at_.push_back(static_cast<std::uint32_t>(folded_.size()));
  folded_.append(kRoom, '\0');
  same_word_.assign(words.size(), kNone);

  std::size_t tokens = words.size() + 1;
  for (std::size_t i = kRoom; i + kRoom < folded_.size(); ++i) {
    if (tokens_ == Tokens::kSingleBytes || ends_token_[static_cast<unsigned char>(folded_[i])]) ++tokens;
  }
  nodes_.reserve(tokens);
  nodes_.emplace_back();
  children_.assign(std::bit_ceil(tokens * 3 / 2), Child());
}

bool TokenAutomaton::is_child(std::uint32_t node, std::uint32_t parent, const Token& token) const {
  const Node& there = nodes_[node];
  if (there.parent != parent || (parent != kRoot && there.delimiter != token.delimiter)) return false;
  const std::size_t length = token.text.size();
  if (there.token_length != length || there.first_bytes != first_bytes(token.text.data(), length)) return false;
  return length <= 8 || equal_tokens(folded_.data() + there.token_at, token.text.data(), length);
}

std::uint32_t TokenAutomaton::child(std::uint32_t parent, const Token& token) const {
  const std::uint64_t key = child_key(parent, token.hash, token.delimiter);
  const std::size_t mask = children_.size() - 1;
  for (std::size_t i = static_cast<std::size_t>(key) & mask;; i = (i + 1) & mask) {
    const Child& entry = children_[i];
    if (entry.node == kRoot) return kNone;
    if (entry.tag == tag_of(key) && is_child(entry.node, parent, token)) return entry.node;
  }
}

std::uint32_t TokenAutomaton::add_child(std::uint32_t parent, const Token& token) {
  const std::uint32_t node = static_cast<std::uint32_t>(nodes_.size());
  Node& added = nodes_.emplace_back();
  added.token_at = static_cast<std::uint32_t>(token.text.data() - folded_.data());
  added.token_length = static_cast<std::uint32_t>(token.text.size());
  added.first_bytes = first_bytes(token.text.data(), token.text.size());
  added.parent = parent;
  added.delimiter = parent == kRoot ? '\0' : token.delimiter;
  nodes_[parent].resume = parent;
  nodes_[parent].children |= child_bit(token.hash);

  const std::uint64_t key = child_key(parent, token.hash, token.delimiter);
  const std::size_t mask = children_.size() - 1;
  std::size_t i = static_cast<std::size_t>(key) & mask;
  while (children_[i].node != kRoot) i = (i + 1) & mask;
  children_[i] = {tag_of(key), node};
  return node;
}

void TokenAutomaton::add_word(std::uint32_t number) {
  std::uint32_t node = kRoot;
  for_each_token(number, [&](const Token& token) {
    const std::uint32_t there = child(node, token);
    node = there != kNone ? there : add_child(node, token);
  });
  same_word_[number] = nodes_[node].word;
  nodes_[node].word = number;
  nodes_[node].word_length = static_cast<std::uint32_t>(folded_word(number).size());
}

// Parents before their children, and everything that `fail` can name before the node that names it.
std::vector<std::uint32_t> TokenAutomaton::nodes_by_depth() const {
  std::vector<std::uint32_t> depths(nodes_.size());
  std::vector<std::uint32_t> starts(nodes_.size() + 1);
  for (std::size_t node = 1; node < nodes_.size(); ++node) {
    depths[node] = depths[nodes_[node].parent] + 1;
    ++starts[depths[node]];
  }
  std::uint32_t start = 0;
  for (std::uint32_t& count : starts) count = std::exchange(start, start + count);
  std::vector<std::uint32_t> order(nodes_.size() - 1);
  for (std::size_t node = 1; node < nodes_.size(); ++node) {
    order[starts[depths[node]]++] = static_cast<std::uint32_t>(node);
  }
  return order;
}

TokenAutomaton::Token TokenAutomaton::token_of(const Node& node) const {
  const std::string_view text = std::string_view(folded_).substr(node.token_at, node.token_length);
  return {text, hash_token(text.data(), text.size()), node.delimiter};
}

void TokenAutomaton::link(std::uint32_t number) {
  Node& node = nodes_[number];
  const Token token = token_of(node);
  if (node.parent == kRoot) {
    first_tokens_.add(token_mark(token.text.data(), token.text.size()));
    shortest_first_ = std::min(shortest_first_, token.text.size());
  }
  std::uint32_t state = node.parent;
  while (state != kRoot && node.fail == kRoot) {
    state = nodes_[state].fail;
    const std::uint32_t there = child(state, token);
    if (there != kNone) node.fail = there;
  }
  node.report = node.word != kNone ? number : nodes_[node.fail].report;
  if (node.resume == kRoot) node.resume = nodes_[node.fail].resume;
}

TokenAutomaton::TokenAutomaton(std::span<const std::string_view> words, std::span<const std::uint32_t> numbers,
                               std::string_view delimiters, Tokens tokens)
    : tokens_(tokens), numbers_(numbers.begin(), numbers.end()) {
  for (const char delimiter : delimiters) ends_token_[static_cast<unsigned char>(delimiter)] = true;
  reserve(words);
  for (std::size_t i = words.size(); i-- > 0;) add_word(static_cast<std::uint32_t>(i));
  const auto is_first = [](const Node& node) { return node.parent == kRoot; };
  first_tokens_ = HashFilter(static_cast<std::size_t>(std::count_if(nodes_.begin(), nodes_.end(), is_first)));
  for (const std::uint32_t node : nodes_by_depth()) link(node);
  nodes_.shrink_to_fit();
}

// False when its word was seen before.
bool TokenAutomaton::report(const Node& node, std::size_t end, Sightings& found) const {
  const std::size_t start = end - node.word_length;
  if (!found.add(numbers_[node.word], start, end)) return false;
  for (std::uint32_t same = same_word_[node.word]; same != kNone; same = same_word_[same]) {
    found.add(numbers_[same], start, end);
  }
  return true;
}

// The longest node that the state's path and the token, or an end of them, lead to. Few tokens lead anywhere, and most
// of the others are ruled out before the table of children is looked at.
std::uint32_t TokenAutomaton::next_state(std::uint32_t state, const Token& token) const {
  for (; state != kRoot; state = nodes_[state].fail) {
    if ((nodes_[state].children & child_bit(token.hash)) == 0) continue;
    const std::uint32_t there = child(state, token);
    if (there != kNone) return there;
  }
  if (!first_tokens_.may_hold(token_mark(token.text.data(), token.text.size()))) return kRoot;
  const std::uint32_t there = child(kRoot, token);
  return there != kNone ? there : kRoot;
}

std::uint32_t TokenAutomaton::enter(std::uint32_t node, std::size_t end, Sightings& found) const {
  // What follows a word that was seen before was seen with it.
  for (std::uint32_t at = nodes_[node].report; at != kRoot; at = nodes_[nodes_[at].fail].report) {
    if (!report(nodes_[at], end, found)) break;
  }
  return nodes_[node].resume;
}

void TokenAutomaton::find_single_bytes(const FoldedText& text, Sightings& found) const {
  std::uint32_t state = kRoot;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char* const byte = text.data() + i;
    if (state == kRoot && !first_tokens_.may_hold(token_mark(byte, 1))) continue;
    state = enter(next_state(state, {{byte, 1}, hash_token(byte, 1), '\0'}), i + 1, found);
  }
}

void TokenAutomaton::find_at_start(const FoldedText& text, Sightings& found) const {
  std::uint32_t node = kRoot;
  for (std::size_t i = 0; i < text.size(); ++i) {
    node = child(node, {text.view().substr(i, 1), hash_token(text.data() + i, 1), '\0'});
    if (node == kNone) return;
    if (nodes_[node].word != kNone) report(nodes_[node], i + 1, found);
  }
}

// Where the next token end stands, at `from` or behind it; there is one.
inline std::size_t TokenAutomaton::next_end(std::span<const std::uint64_t> ends, std::size_t from) {
  std::size_t word = from / 64;
  std::uint64_t bits = ends[word] >> (from % 64);
  if (bits != 0) [[likely]]
    return from + static_cast<std::size_t>(std::countr_zero(bits));
  do {
    bits = ends[++word];
  } while (bits == 0);
  return word * 64 + static_cast<std::size_t>(std::countr_zero(bits));
}

// The starts of tokens, of 64 places, but for tokens too short to be the first of a word.
inline std::uint64_t TokenAutomaton::first_starts(std::span<const std::uint64_t> ends, std::size_t word) const {
  const std::uint64_t here = ends[word];
  const bool is_last = word + 1 == ends.size();
  const std::uint64_t behind = is_last ? 0 : ends[word + 1];
  std::uint64_t starts = here << 1 | (word == 0 ? 1 : ends[word - 1] >> 63);
  if (is_last) starts &= (std::bit_floor(here) << 1) - 1;  // none behind the end of the text
  if (shortest_first_ >= 1) starts &= ~here;
  if (shortest_first_ >= 2) starts &= ~(here >> 1 | behind << 63);
  if (shortest_first_ >= 3) starts &= ~(here >> 2 | behind << 62);
  return starts;
}

// Goes on from a token behind which a word may continue, token by token, until none may. Returns the end of the last
// token looked at.
std::size_t TokenAutomaton::follow(const FoldedText& text, std::size_t start, std::size_t end, Sightings& found) const {
  const auto token = [&] {
    const char* const at = text.data() + start;
    return Token{{at, end - start}, hash_token(at, end - start), at[-1]};
  };
  std::uint32_t node = child(kRoot, token());
  if (node == kNone) return end;
  while (true) {
    const std::uint32_t state = enter(node, end, found);
    if (state == kRoot || end >= text.size()) return end;
    start = end + 1;
    end = next_end(text.token_ends(), start);
    node = next_state(state, token());
  }
}

void TokenAutomaton::find(const FoldedText& text, Sightings& found) const {
  if (tokens_ == Tokens::kSingleBytes) return find_single_bytes(text, found);
  const std::span<const std::uint64_t> ends = text.token_ends();
  std::size_t looked_at = 0;  // up to here; 0: nothing
  for (std::size_t word = 0; word < ends.size(); ++word) {
    for (std::uint64_t starts = first_starts(ends, word); starts != 0; starts &= starts - 1) {
      const std::size_t start = word * 64 + static_cast<std::size_t>(std::countr_zero(starts));
      const std::size_t end = next_end(ends, start + shortest_first_);
      if (!first_tokens_.may_hold(token_mark(text.data() + start, end - start))) [[likely]]
        continue;
      if (start >= looked_at) looked_at = follow(text, start, end, found) + 1;
    }
  }
}

std::size_t TokenAutomaton::memory() const {
  return folded_.capacity() +
         (word_at_.capacity() + same_word_.capacity() + numbers_.capacity()) * sizeof(std::uint32_t) +
         nodes_.capacity() * sizeof(Node) + children_.capacity() * sizeof(Child) + first_tokens_.memory();
}

}  // namespace pv
