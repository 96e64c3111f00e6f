#include "filters/asterisk_patterns.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace pv {
namespace {

constexpr std::uint32_t kFewPatterns = 8;  // so many may share a prefix without harm

struct Parts {
  std::string prefix;
  std::vector<std::string> others;  // not empty
};

// A pattern with two adjacent asterisks is one part, asterisks included.
Parts parts_of(std::string_view pattern) {
  std::string folded;
  std::transform(pattern.begin(), pattern.end(), std::back_inserter(folded), fold);
  if (folded.find("**") != std::string::npos) return {{}, {folded}};
  std::size_t asterisk = folded.find('*');
  Parts parts{folded.substr(0, asterisk), {}};
  while (asterisk != std::string::npos) {
    const std::size_t start = asterisk + 1;
    asterisk = folded.find('*', start);
    std::string part = folded.substr(start, asterisk == std::string::npos ? asterisk : asterisk - start);
    if (!part.empty()) parts.others.push_back(std::move(part));
  }
  return parts;
}

// How many texts of a thousand hold a part of so many bytes, roughly.
std::uint32_t commonness(std::size_t length) {
  constexpr std::array<std::uint32_t, 5> kByLength = {1000, 500, 150, 40, 10};
  return length < kByLength.size() ? kByLength[length] : 5;
}

}  // namespace

// How many patterns could use a key.
struct AsteriskPatterns::Counts {
  std::unordered_map<std::string, std::uint32_t> prefixes;
  std::unordered_map<std::string, std::uint32_t> others;
};

AsteriskPatterns::Key AsteriskPatterns::key_of(std::string_view pattern, const Counts& counts) {
  Parts parts = parts_of(pattern);
  const bool has_prefix = !parts.prefix.empty();
  if (has_prefix && counts.prefixes.at(parts.prefix) <= kFewPatterns) {
    return {std::move(parts.prefix), true};
  }
  const auto cost = [&](const std::string& part) { return counts.others.at(part) * commonness(part.size()); };
  const auto best = std::min_element(parts.others.begin(), parts.others.end(),
                                     [&](const auto& a, const auto& b) { return cost(a) < cost(b); });
  if (best == parts.others.end()) return {std::move(parts.prefix), has_prefix};
  return {std::move(*best), false};
}

void AsteriskPatterns::add_prefixes(std::span<const std::string> prefixes, std::span<const std::uint32_t> numbers) {
  if (prefixes.empty()) return;
  const std::vector<std::string_view> views(prefixes.begin(), prefixes.end());
  prefixes_.emplace(views, numbers, std::string_view(), Tokens::kSingleBytes);
  first_bytes_ = HashFilter(prefixes.size());
  for (const std::string& prefix : prefixes) {
    char bytes[8] = {};
    const std::size_t used = prefix.copy(bytes, kFirstBytesUsed);
    first_bytes_.add(token_mark(bytes, used));
    shortest_prefix_ = std::min(shortest_prefix_, used);
  }
}

void AsteriskPatterns::add_pieces(const std::map<std::string, std::vector<std::uint32_t>>& users) {
  if (users.empty()) return;
  std::vector<std::string> pieces;
  for (const auto& [piece, patterns] : users) {
    pieces.push_back(piece);
    piece_users_at_.push_back(static_cast<std::uint32_t>(piece_users_.size()));
    piece_users_.insert(piece_users_.end(), patterns.begin(), patterns.end());
  }
  piece_users_at_.push_back(static_cast<std::uint32_t>(piece_users_.size()));
  pieces_.emplace(std::move(pieces));
}

AsteriskPatterns::AsteriskPatterns(std::span<const std::string_view> patterns, std::span<const std::uint32_t> numbers) {
  Counts counts;
  for (const std::string_view pattern : patterns) {
    const Parts parts = parts_of(pattern);
    ++counts.prefixes[parts.prefix];
    for (const std::string& part : parts.others) ++counts.others[part];
  }
  std::vector<std::string> prefixes;
  std::vector<std::uint32_t> with_prefix;
  std::map<std::string, std::vector<std::uint32_t>> users;  // of the pieces
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    Key key = key_of(patterns[i], counts);
    if (key.text.empty()) {
      without_key_.push_back(numbers[i]);
    } else if (key.is_prefix) {
      prefixes.push_back(std::move(key.text));
      with_prefix.push_back(numbers[i]);
    } else {
      users[key.text].push_back(numbers[i]);
    }
  }
  add_prefixes(prefixes, with_prefix);
  largest_number_ = *std::max_element(numbers.begin(), numbers.end());
  add_pieces(users);
}

std::size_t AsteriskPatterns::memory() const {
  const std::size_t numbers = without_key_.capacity() + piece_users_at_.capacity() + piece_users_.capacity();
  return numbers * sizeof(std::uint32_t) + first_bytes_.memory() + (prefixes_ ? prefixes_->memory() : 0) +
         (pieces_ ? pieces_->memory() : 0);
}

}  // namespace pv
