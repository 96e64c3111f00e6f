#include "vbscript/text_search.h"

#include <cstdint>
#include <vector>

#include "vbscript/code_page.h"

namespace pv::vbscript {
namespace {

// Below these the library's search is quickest; above, a text such as "aaaa…" would make it compare each place to the
// end of a long `wanted`.
constexpr std::size_t kShortWanted = 16;
constexpr std::size_t kShortText = 256;

// A text read from its beginning, or from its end.
struct Forwards {
  std::string_view text;
  char operator[](std::size_t i) const { return text[i]; }
};
struct Backwards {
  std::string_view text;
  char operator[](std::size_t i) const { return text[text.size() - 1 - i]; }
};

// For each beginning of `wanted`, how much of it is also its end (Knuth, Morris, Pratt).
template <typename Read>
std::vector<std::uint32_t> borders_of(Read wanted) {
  const std::size_t size = wanted.text.size();
  std::vector<std::uint32_t> borders(size, 0);
  for (std::size_t i = 1, matched = 0; i < size; ++i) {
    while (matched > 0 && wanted[i] != wanted[matched]) matched = borders[matched - 1];
    if (wanted[i] == wanted[matched]) ++matched;
    borders[i] = static_cast<std::uint32_t>(matched);
  }
  return borders;
}

// How many characters are read to the end of the first occurrence; kNowhere.
template <typename Read>
std::size_t end_of_first(Read text, Read wanted) {
  const std::vector<std::uint32_t> borders = borders_of(wanted);
  std::size_t matched = 0;
  for (std::size_t i = 0; i < text.text.size(); ++i) {
    while (matched > 0 && text[i] != wanted[matched]) matched = borders[matched - 1];
    if (text[i] == wanted[matched] && ++matched == wanted.text.size()) return i + 1;
  }
  return TextSearch::kNowhere;
}

bool is_short(std::string_view text, std::string_view wanted) {
  return wanted.size() <= kShortWanted || text.size() <= kShortText;
}

}  // namespace

TextSearch::TextSearch(std::string_view text, std::string_view wanted, bool ignore_case)
    : text_(text), wanted_(wanted) {
  if (!ignore_case) return;
  folded_text_ = lower_case(text);
  folded_wanted_ = lower_case(wanted);
  text_ = folded_text_;
  wanted_ = folded_wanted_;
}

std::size_t TextSearch::next(std::size_t from) const {
  const std::string_view rest = text_.substr(from);
  if (wanted_.size() > rest.size()) return kNowhere;
  if (is_short(rest, wanted_)) return text_.find(wanted_, from);
  const std::size_t end = end_of_first(Forwards{rest}, Forwards{wanted_});
  return end == kNowhere ? kNowhere : from + end - wanted_.size();
}

std::size_t TextSearch::last() const {
  if (wanted_.size() > text_.size()) return kNowhere;
  if (is_short(text_, wanted_)) return text_.rfind(wanted_);
  const std::size_t end = end_of_first(Backwards{text_}, Backwards{wanted_});
  return end == kNowhere ? kNowhere : text_.size() - end;
}

}  // namespace pv::vbscript
