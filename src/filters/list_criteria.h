// What the list criteria have in common: the entries of a slot, each entry's value, the words of a value, the word file
// a value may name instead, and the record of a match.
//
//     data "free <tab> offer", entry_count 1:   one entry of two words
//     the same with entry_count 2:              two entries of one word each
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "filters/filter_set.h"
#include "filters/match_results.h"

namespace pv {

struct EntryMatches;  // filters/criterion_words.h

// One entry of a slot that is in use, and the record of the filter it belongs to.
struct ListEntry {
  SlotIndex slot = 0;
  int entry = 0;           // below kMaxEntries
  std::string_view value;  // part of the slot's data
  FilterMatch& match;
};

// The text that the words of an entry are matched against.
struct ListSubject {
  std::string_view text;
  std::string_view delimiters;
};

// Value of entry `entry`: the slot's whole data cut to `capacity` - 1 bytes when it is the only entry, else its field
// of the data; empty when there is no such field or it has `capacity` bytes or more.
std::string_view entry_value(const CriterionSlot& criterion, int entry, std::size_t capacity);

// The words of a value in order: its tab-separated fields, as many as count_fields() counts. The last one of a value
// that begins with a tab is therefore not among them.
class Words {
 public:
  explicit Words(std::string_view value);
  std::optional<std::string_view> next();
  int remaining() const { return remaining_; }

 private:
  std::string_view rest_;
  int remaining_;
};

// Tests the text against the word file that the entry's value refers to, recording matches under `tag`. False when it
// refers to none or the file cannot be had: then the value is a list of words.
bool word_file_answers(const ListEntry& entry, const ListSubject& subject, const char* tag, const FilterSet& set,
                       const MatchResults& results);

// Records the matching lines of a word file. False when the words are not from a word file.
bool record_file_lines(const EntryMatches& found, SlotIndex slot, const char* tag, FilterMatch& match);

// Counts a match of `word`, which becomes the slot's matched text.
void record_word(const ListEntry& entry, std::string_view tag, std::string_view word);

// Writes the match value of every entry of a criterion.
void set_all_match_values(SlotIndex slot, const CriterionSlot& criterion, std::string_view value, FilterMatch& match);

inline int entries_of(const CriterionSlot& criterion) {
  return std::min(static_cast<int>(criterion.entry_count), kMaxEntries);
}

// Calls `visit(const CriterionSlot&, FilterMatch&)` for every filter in which the slot is in use, in order.
template <typename Visit>
void for_each_criterion(SlotIndex slot, const FilterSet& set, MatchResults& results, Visit visit) {
  for (FilterIndex i = 1; i <= set.filter_count; ++i) {
    const CriterionSlot& criterion = set.filter(i).slots[static_cast<std::size_t>(slot)];
    if (criterion.status == 1) visit(criterion, results.match(i));
  }
}

// Calls `visit(const ListEntry&)` for every entry of every filter in which the slot is in use, in order.
template <typename Visit>
void for_each_entry(SlotIndex slot, std::size_t capacity, const FilterSet& set, MatchResults& results, Visit visit) {
  for_each_criterion(slot, set, results, [&](const CriterionSlot& criterion, FilterMatch& match) {
    for (int entry = 0; entry < entries_of(criterion); ++entry) {
      visit(ListEntry{slot, entry, entry_value(criterion, entry, capacity), match});
    }
  });
}

}  // namespace pv
