#include "filters/segment_finder.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "filters/byte_block.h"
#include "filters/folded_search.h"

namespace pv {
namespace {

constexpr std::size_t kWidth = 4;                    // bytes of a window; narrower where a piece is shorter
constexpr std::size_t kMostAlike = 32;               // pieces compared at one place; beyond, the automaton is faster
constexpr unsigned kLeastBits = 12, kMostBits = 15;  // of the first filter: it has to stay in the nearest cache
constexpr std::size_t kMostSingles = 2;              // long pieces searched for one by one
constexpr std::size_t kFewer = 4;  // shortest pieces up to which looking for each is faster than the closer look
constexpr std::size_t kOffsetsTried = 16;  // where in a piece its windows may begin

// How far apart the looked-at places of a text may be.
std::size_t step_for(std::size_t width, std::size_t shortest) {
  if (shortest >= width + 3) return 4;
  return shortest >= width + 1 ? 2 : 1;
}

// Where the least common of the piece's parts of `length` bytes begins.
std::size_t rarest_part(std::string_view piece, std::size_t length) {
  std::size_t best = 0;
  for (std::size_t i = 1; i + length <= piece.size(); ++i) {
    if (commonness(piece.substr(i, length)) < commonness(piece.substr(best, length))) best = i;
  }
  return best;
}

std::size_t shortest_of(std::span<const std::string_view> pieces) {
  std::size_t shortest = pieces.front().size();
  for (const std::string_view piece : pieces) shortest = std::min(shortest, piece.size());
  return shortest;
}

}  // namespace

void ShortPieces::add(std::string_view piece, std::uint32_t number) {
  Piece& added = pieces_[count_++];
  const std::size_t offset = rarest_part(piece, kBytes);
  for (std::size_t i = 0; i < kBytes; ++i) std::memset(added.bytes[i], piece[offset + i], sizeof added.bytes[i]);
  std::memcpy(&added.text, piece.data(), std::min(piece.size(), sizeof added.text));
  added.length = static_cast<std::uint32_t>(piece.size());
  added.offset = static_cast<std::uint32_t>(offset);
  added.number = number;
}

void ShortPieces::compare(const FoldedText& text, std::size_t place, Sightings& found) const {
  for (std::size_t i = 0; i < count_; ++i) {
    const Piece& piece = pieces_[i];
    if (piece.offset > place) continue;
    const std::size_t start = place - piece.offset;
    const std::size_t end = start + piece.length;
    if (end <= text.size() && first_bytes(text.data() + start, piece.length) == piece.text) {
      found.add(piece.number, start, end);
    }
  }
}

void ShortPieces::find(const FoldedText& text, Sightings& found) const {
  for (std::size_t at = 0; at < text.size(); at += sizeof(ByteBlock)) {
    ByteBlock here, behind, farther;
    std::memcpy(&here, text.data() + at, sizeof here);
    std::memcpy(&behind, text.data() + at + 1, sizeof behind);
    std::memcpy(&farther, text.data() + at + 2, sizeof farther);
    ByteBlock any{};
    for (std::size_t i = 0; i < count_; ++i) {
      ByteBlock first, second, third;
      std::memcpy(&first, pieces_[i].bytes[0], sizeof first);
      std::memcpy(&second, pieces_[i].bytes[1], sizeof second);
      std::memcpy(&third, pieces_[i].bytes[2], sizeof third);
      any |= (here == first) & (behind == second) & (farther == third);
    }
    for (std::uint32_t bits = bits_of(any); bits != 0; bits &= bits - 1) {
      compare(text, at + static_cast<std::size_t>(std::countr_zero(bits)), found);
    }
  }
}

// Where the windows of these bytes are listed, or would be.
inline std::size_t WindowTable::head_of(std::uint32_t value) const {
  const std::size_t mask = heads_.size() - 1;
  std::size_t i = static_cast<std::size_t>(hash_of(value) >> 24) & mask;
  while (heads_[i].window != 0 && heads_[i].value != value) i = (i + 1) & mask;
  return i;
}

WindowTable::WindowTable(std::span<const std::string_view> pieces, std::span<const std::uint32_t> numbers) {
  const std::size_t shortest = shortest_of(pieces);
  width_ = std::min(shortest, kWidth);
  step_ = width_ == kWidth ? step_for(width_, shortest) : 1;
  mask_ = 0xFFFFFFFFU >> (32 - 8 * width_);
  const std::size_t windows = pieces.size() * step_;
  const unsigned wanted_bits = static_cast<unsigned>(std::bit_width(windows * 32));
  first_filter_shift_ = 32 - std::clamp(wanted_bits, kLeastBits, kMostBits);
  first_filter_.assign(std::size_t{1} << (32 - first_filter_shift_), 0);
  filter_ = HashFilter(windows);
  heads_.assign(std::bit_ceil(windows * 2), Head());
  windows_.reserve(windows);
  Uses uses;
  for (std::size_t i = 0; i < pieces.size(); ++i) add_windows(pieces[i], numbers[i], uses);
  for (const auto& [value, count] : uses) most_alike_ = std::max<std::size_t>(most_alike_, count);
}

// Takes the windows that few texts and few pieces have.
void WindowTable::add_windows(std::string_view piece, std::uint32_t number, Uses& uses) {
  // The loads reach beyond the piece's end, so they are made in a copy.
  char bytes[kOffsetsTried + 4 + 4] = {};
  const std::size_t copied = std::min(piece.size(), sizeof bytes - 4);
  std::memcpy(bytes, piece.data(), copied);
  const auto cost = [&](std::size_t offset) {
    std::uint32_t sum = 0;
    for (std::size_t i = offset; i < offset + step_; ++i) {
      const auto used = uses.find(value_at(bytes + i));
      sum += (used == uses.end() ? 1 : used->second + 1) * commonness({bytes + i, width_});
    }
    return sum;
  };
  std::size_t best = 0;
  for (std::size_t offset = 1; offset + width_ + step_ <= copied + 1; ++offset) {
    if (cost(offset) < cost(best)) best = offset;
  }
  for (std::size_t offset = best; offset < best + step_; ++offset) {
    const std::uint32_t value = value_at(bytes + offset);
    ++uses[value];
    first_filter_[first_hash_of(value) >> first_filter_shift_] = 1;
    filter_.add(hash_of(value));
    Head& head = heads_[head_of(value)];
    windows_.push_back(
        {piece, first_bytes(bytes, piece.size()), number, static_cast<std::uint32_t>(offset), head.window});
    head = {value, static_cast<std::uint32_t>(windows_.size())};
  }
}

void WindowTable::compare(const FoldedText& text, std::size_t place, Sightings& found) const {
  for (std::uint32_t i = heads_[head_of(value_at(text.data() + place))].window; i != 0; i = windows_[i - 1].next) {
    const Window& window = windows_[i - 1];
    if (window.offset > place) continue;
    const char* const start = text.data() + (place - window.offset);
    const std::size_t length = window.piece.size();
    if (first_bytes(start, length) != window.first_bytes || place - window.offset + length > text.size()) continue;
    if (length <= 8 || std::memcmp(start + 8, window.piece.data() + 8, length - 8) == 0) {
      found.add(window.number, place - window.offset, place - window.offset + length);
    }
  }
}

// Eight places at a time, without a branch for each of them. The bytes behind the text are zero.
template <std::size_t kStep, bool kWhole>
void WindowTable::find_in_steps(const FoldedText& text, Sightings& found) const {
  constexpr std::size_t kPlaces = 8;
  const char* const bytes = text.data();
  const unsigned char* const first_filter = first_filter_.data();
  const unsigned shift = first_filter_shift_;
  const std::uint32_t mask = kWhole ? 0xFFFFFFFFU : mask_;
  for (std::size_t i = 0; i + width_ <= text.size(); i += kPlaces * kStep) {
    unsigned passed = 0;
#pragma GCC unroll 8  // Clang knows it too
    for (std::size_t k = 0; k < kPlaces; ++k) {
      passed |= unsigned{first_filter[first_hash_of(load_4(bytes + i + k * kStep) & mask) >> shift]} << k;
    }
    for (; passed != 0; passed &= passed - 1) {
      const std::size_t place = i + static_cast<std::size_t>(std::countr_zero(passed)) * kStep;
      if (filter_.may_hold(hash_of(value_at(bytes + place))) && place < text.size()) compare(text, place, found);
    }
  }
}

void WindowTable::find(const FoldedText& text, Sightings& found) const {
  switch (step_) {
    case 4:
      return find_in_steps<4, true>(text, found);
    case 2:
      return width_ == kWidth ? find_in_steps<2, true>(text, found) : find_in_steps<2, false>(text, found);
    default:
      return width_ == kWidth ? find_in_steps<1, true>(text, found) : find_in_steps<1, false>(text, found);
  }
}

std::size_t WindowTable::memory() const {
  return first_filter_.capacity() + filter_.memory() + heads_.capacity() * sizeof heads_[0] +
         windows_.capacity() * sizeof(Window);
}

std::vector<std::uint32_t> SegmentFinder::numbers_of(std::size_t shortest, std::size_t longest) const {
  std::vector<std::uint32_t> numbers;
  for (std::uint32_t i = 0; i < pieces_.size(); ++i) {
    if (pieces_[i].size() >= shortest && pieces_[i].size() <= longest) numbers.push_back(i);
  }
  return numbers;
}

void SegmentFinder::add_table(std::size_t shortest, std::size_t longest) {
  const std::vector<std::uint32_t> numbers = numbers_of(shortest, longest);
  std::vector<std::string_view> pieces;
  pieces.reserve(numbers.size());
  for (const std::uint32_t number : numbers) pieces.push_back(pieces_[number]);
  if (!pieces.empty()) tables_.emplace_back(pieces, numbers);
}

bool SegmentFinder::add_few(std::size_t shortest, std::size_t longest, std::size_t most) {
  const std::vector<std::uint32_t> numbers = numbers_of(shortest, longest);
  if (few_.count() + numbers.size() > most) return false;
  for (const std::uint32_t number : numbers) few_.add(pieces_[number], number);
  return true;
}

// The shortest piece of a table decides how closely the text is looked at for all of them; hence several.
SegmentFinder::SegmentFinder(std::vector<std::string> pieces) : pieces_(std::move(pieces)) {
  add_table(1, 1);
  add_table(2, 2);
  constexpr std::size_t kShortest = ShortPieces::kShortest;
  if (!add_few(kShortest, kShortest, ShortPieces::kMost)) add_table(kShortest, kShortest);
  const std::size_t rest = add_few(kWidth, kWidth, kFewer) ? kWidth + 1 : kWidth;
  singles_ = numbers_of(rest, std::string::npos);
  if (singles_.size() > kMostSingles) {
    singles_.clear();
    add_table(rest, std::string::npos);
  }
  use_automaton_if_crowded();
}

void SegmentFinder::use_automaton_if_crowded() {
  const auto crowded = [](const WindowTable& table) { return table.most_alike() > kMostAlike; };
  if (std::none_of(tables_.begin(), tables_.end(), crowded)) return;
  tables_.clear();
  few_ = ShortPieces();
  singles_.clear();
  const std::vector<std::string_view> views(pieces_.begin(), pieces_.end());
  automaton_.emplace(views, numbers_of(0, std::string::npos), std::string_view(), Tokens::kSingleBytes);
}

void SegmentFinder::find(const FoldedText& text, Sightings& found) const {
  if (automaton_) return automaton_->find(text, found);
  if (few_.count() > 0) few_.find(text, found);
  for (const std::uint32_t single : singles_) {
    if (occurs_in(text, text.size(), pieces_[single])) found.add(single, 0, 0);
  }
  for (const WindowTable& table : tables_) table.find(text, found);
}

std::size_t SegmentFinder::memory() const {
  std::size_t sum = automaton_ ? automaton_->memory() : 0;
  for (const WindowTable& table : tables_) sum += table.memory();
  for (const std::string& piece : pieces_)
    sum += sizeof(std::string) + (piece.capacity() > 15 ? piece.capacity() + 1 : 0);
  return sum;
}

}  // namespace pv
