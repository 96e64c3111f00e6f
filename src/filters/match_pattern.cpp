#include "filters/match_pattern.h"

#include <cstddef>

#include "common/text_search.h"

namespace pv {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

// One text and how it is compared. "By the flag" below means exactly with `case_sensitive`, else in any case.
struct Subject {
  std::string_view text;
  std::string_view delimiters;
  bool case_sensitive = false;
};

bool is_delimiter(const Subject& subject, char c) {
  return subject.delimiters.find(c) != kNowhere;
}

bool delimited_before(const Subject& subject, std::size_t start) {
  return start == 0 || is_delimiter(subject, subject.text[start - 1]);
}

bool delimited_after(const Subject& subject, std::size_t end) {
  return end == subject.text.size() || is_delimiter(subject, subject.text[end]);
}

// By the flag.
std::size_t find_from(const Subject& subject, std::string_view part, std::size_t from) {
  return subject.case_sensitive ? subject.text.find(part, from) : find_nocase(subject.text, part, from);
}

// By the flag.
bool stands_at(const Subject& subject, std::string_view part, std::size_t position) {
  const std::string_view there = subject.text.substr(position, part.size());
  return subject.case_sensitive ? there == part : equals_nocase(there, part);
}

// A second chance for a segment that does not occur behind the ones before it: it may stand where the whole text first
// has its initial letter in the opposite case, even before them. Compared exactly it cannot stand there.
std::size_t find_opposite_case(const Subject& subject, std::string_view segment) {
  if (subject.case_sensitive || !is_ascii_letter(segment.front())) return kNowhere;
  const char upper = ascii_upper(segment.front());
  const char opposite = segment.front() == upper ? static_cast<char>(upper - 'A' + 'a') : upper;
  const std::size_t position = subject.text.find(opposite);
  return position != kNowhere && stands_at(subject, segment, position) ? position : kNowhere;
}

// Where the search for the next segment begins, or nowhere. A segment found in its turn is left after its first
// character, so the next one may overlap it; one found by the second chance is not left at all.
std::size_t pass_middle(const Subject& subject, std::string_view segment, std::size_t from) {
  const std::size_t found = find_nocase(subject.text, segment, from);
  return found != kNowhere ? found + 1 : find_opposite_case(subject, segment);
}

// Only the first occurrence behind `from` is examined, and the second chance is not for a badly delimited one.
bool tail_matches(const Subject& subject, std::string_view tail, std::size_t from) {
  std::size_t position = find_from(subject, tail, from);
  if (position == kNowhere) position = find_opposite_case(subject, tail);
  return position != kNowhere && delimited_after(subject, position + tail.size());
}

bool segments_match(const Subject& subject, std::string_view pattern, std::size_t first_asterisk) {
  if (!stands_at(subject, pattern.substr(0, first_asterisk), 0)) return false;
  std::size_t position = first_asterisk;
  std::size_t segment = first_asterisk + 1;
  for (std::size_t end = pattern.find('*', segment); end != kNowhere; end = pattern.find('*', segment)) {
    position = pass_middle(subject, pattern.substr(segment, end - segment), position);
    if (position == kNowhere) return false;
    segment = end + 1;
  }
  const std::string_view tail = pattern.substr(segment);
  return tail.empty() || tail_matches(subject, tail, position);
}

bool word_matches(const Subject& subject, std::string_view word) {
  const std::size_t start = find_from(subject, word, 0);
  return start != kNowhere && delimited_before(subject, start) && delimited_after(subject, start + word.size());
}

}  // namespace

bool MatchPattern(std::string_view text, std::string_view pattern, std::string_view delimiters, bool case_sensitive) {
  if (pattern.empty()) return false;
  const Subject subject{text, delimiters, case_sensitive};
  const std::size_t asterisk = pattern.find('*');
  if (asterisk == kNowhere) return word_matches(subject, pattern);
  if (pattern.find("**", asterisk) != kNowhere) return contains_nocase(text, pattern);
  return segments_match(subject, pattern, asterisk);
}

}  // namespace pv
