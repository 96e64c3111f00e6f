#include "common/text_search.h"

#include <algorithm>
#include <utility>

namespace pv {
namespace {

constexpr char ascii_lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// `a` has at least the length of `b`.
bool equal_bytes_nocase(const char* a, std::string_view b) {
  for (std::size_t i = 0; i < b.size(); ++i) {
    if (ascii_upper(a[i]) != ascii_upper(b[i])) return false;
  }
  return true;
}

// The places where a byte stands in either case, in order. Each case has its own search (memchr), and a found place is
// kept until it is passed: a text without upper-case letters is searched for one just once.
class NocaseByteFinder {
 public:
  NocaseByteFinder(std::string_view text, char byte)
      : text_(text),
        upper_(ascii_upper(byte)),
        lower_(ascii_lower(byte)),
        upper_at_(text.find(upper_)),
        lower_at_(upper_ == lower_ ? std::string_view::npos : text.find(lower_)) {}

  std::size_t at() const { return std::min(upper_at_, lower_at_); }  // npos: no more
  void pass() {
    if (upper_at_ < lower_at_) {
      upper_at_ = text_.find(upper_, upper_at_ + 1);
    } else {
      lower_at_ = text_.find(lower_, lower_at_ + 1);
    }
  }

 private:
  const std::string_view text_;
  const char upper_;
  const char lower_;
  std::size_t upper_at_;
  std::size_t lower_at_;
};

// The first occurrence that begins in [begin, end); no occurrence that begins there reaches beyond `text`.
std::size_t find_in_window(std::string_view text, std::string_view pattern, std::size_t begin, std::size_t end) {
  const std::string_view rest = pattern.substr(1);
  for (NocaseByteFinder first(text.substr(begin, end - begin), pattern.front()); first.at() != std::string_view::npos;
       first.pass()) {
    if (equal_bytes_nocase(text.data() + begin + first.at() + 1, rest)) return begin + first.at();
  }
  return std::string_view::npos;
}

// The two cases are looked for this far at a time, so that a text full of occurrences in the one case is not searched
// to its end for the other at every call.
constexpr std::size_t kWindow = 512;

// False, and `text` as it was, when it would not stay below `capacity`.
bool append_below(std::string& text, std::string_view piece, std::size_t capacity) {
  if (text.size() >= capacity || piece.size() >= capacity - text.size()) return false;
  text.append(piece);
  return true;
}

std::size_t find(std::string_view text, std::string_view pattern, std::size_t from, bool match_case) {
  return match_case ? text.find(pattern, from) : find_nocase(text, pattern, from);
}

// What replace_in_string does with `stay`: inserted text is searched again, so the text changes in place.
int replace_staying(std::string& text, std::string_view pattern, std::string_view replacement, int largest_number,
                    bool match_case) {
  int replaced = 0;
  std::size_t at = 0;
  while (largest_number <= 0 || replaced < largest_number) {
    at = find(text, pattern, at, match_case);
    if (at == std::string_view::npos) break;
    text.replace(at, pattern.size(), replacement);
    ++replaced;
  }
  return replaced;
}

int replace_passing(std::string& text, std::string_view pattern, std::string_view replacement, int largest_number,
                    bool match_case) {
  std::string result;
  int replaced = 0;
  std::size_t from = 0;
  while (largest_number <= 0 || replaced < largest_number) {
    const std::size_t at = find(text, pattern, from, match_case);
    if (at == std::string_view::npos) break;
    result.append(text, from, at - from).append(replacement);
    from = at + pattern.size();
    ++replaced;
  }
  if (replaced > 0) text = result.append(text, from);
  return replaced;
}

}  // namespace

bool equals_nocase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && equal_bytes_nocase(a.data(), b);
}

bool starts_with_nocase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && equal_bytes_nocase(text.data(), prefix);
}

std::size_t find_nocase(std::string_view text, std::string_view pattern, std::size_t from) {
  if (from > text.size() || pattern.size() > text.size() - from) return std::string_view::npos;
  if (pattern.empty()) return from;
  const std::size_t beyond = text.size() - pattern.size() + 1;  // the first place too late for an occurrence
  for (std::size_t begin = from; begin < beyond; begin += kWindow) {
    const std::size_t at = find_in_window(text, pattern, begin, std::min(begin + kWindow, beyond));
    if (at != std::string_view::npos) return at;
  }
  return std::string_view::npos;
}

bool contains_nocase(std::string_view text, std::string_view pattern) {
  return find_nocase(text, pattern) != std::string_view::npos;
}

bool replace_all(std::string& text, std::string_view pattern, std::string_view replacement, std::size_t capacity) {
  if (pattern.empty()) return false;
  std::string result;
  std::size_t from = 0;
  for (std::size_t at = text.find(pattern); at != std::string::npos; at = text.find(pattern, from)) {
    const std::string_view before = std::string_view(text).substr(from, at - from);
    if (!append_below(result, before, capacity) || !append_below(result, replacement, capacity)) return false;
    from = at + pattern.size();
  }
  if (!append_below(result, std::string_view(text).substr(from), capacity)) return false;
  text = std::move(result);
  return true;
}

int replace_in_string(std::string& text, std::string_view pattern, std::string_view replacement, int largest_number,
                      bool stay, bool match_case) {
  if (pattern.empty()) return 0;
  const auto replace = stay ? replace_staying : replace_passing;
  return replace(text, pattern, replacement, largest_number, match_case);
}

std::optional<Extract> extract_between(std::string_view text, std::string_view start, std::string_view end) {
  const std::size_t start_at = text.find(start);
  if (start_at == std::string_view::npos) return std::nullopt;
  const std::size_t begin = start_at + start.size();
  const std::size_t end_at = text.find(end, begin);
  if (end_at == std::string_view::npos) return std::nullopt;
  return Extract{text.substr(begin, end_at - begin), end_at + end.size()};
}

std::optional<std::string> replaced_nocase(std::string_view text, std::string_view pattern,
                                           std::string_view replacement) {
  std::string result(text);
  if (replace_in_string(result, pattern, replacement, 0, false, false) == 0) return std::nullopt;
  return result;
}

}  // namespace pv
