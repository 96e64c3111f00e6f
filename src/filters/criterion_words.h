// The words of one list criterion of all filters, compiled: which entries of which filters have a word that matches a
// text, and which words those are, in the order in which a walk through all words would meet them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "filters/filter_set.h"
#include "filters/list_evaluators.h"
#include "filters/word_file.h"
#include "filters/word_file_copies.h"
#include "filters/word_matcher.h"

namespace pv {

// An entry of a filter in which the criterion is in use.
struct ListEntryValue {
  FilterIndex filter = 0;
  int entry = 0;
  std::string value;  // cut or emptied as the evaluator takes it
};

// Where the words of an entry stand.
enum class WordSource { kValue, kCachedFile, kFile };

struct EntryMatches {
  FilterIndex filter = 0;
  int entry = 0;
  WordSource source = WordSource::kValue;
  int field_count = 0;                      // of the value, when the words stand in it
  std::span<const std::string_view> words;  // those that match, in their order
};

// What one message's texts are matched with. Keeps its memory for the next message; used by one thread at a time.
struct CriterionScratch {
  // A word or line, by its place in the walk, and for a word with the sender its number + 1.
  struct Hit {
    std::uint32_t place = 0;
    std::uint32_t sender_word = 0;
    bool operator<(const Hit& other) const { return place < other.place; }
    bool operator==(const Hit& other) const { return place == other.place; }
  };
  MatcherScratch matcher;
  std::vector<std::uint32_t> matches;
  std::vector<Hit> hits;
  std::vector<std::uint32_t> entries;
  std::vector<std::string_view> words;
  std::vector<EntryMatches> found;
};

// Immutable; any thread.
class CriterionWords {
 public:
  // Word files are taken from the set's cache with `cached`, else from `copies`. `entries` outlive the object.
  CriterionWords(const ListCriterion& criterion, std::span<const ListEntryValue> entries, const FilterSet& set,
                 std::string_view configuration, bool cached, WordFileCopies& copies);
  CriterionWords(const CriterionWords&) = delete;
  CriterionWords& operator=(const CriterionWords&) = delete;

  bool made_for(std::string_view configuration, bool cached) const {
    return cached_ == cached && configuration_ == configuration;
  }
  bool files_are_current(WordFileCopies& copies) const;

  enum class Entries { kMatching, kAll };

  // The entries with a matching word, or all entries, in the order of the filters. A word matches when it matches one
  // of the texts. `sender_words` are those of written_sender_words() with the sender put in. What is returned lives in
  // `scratch` until the next call.
  std::span<const EntryMatches> find(std::span<const std::string_view> texts, bool case_sensitive, Entries which,
                                     std::span<const std::string> sender_words, CriterionScratch& scratch) const;

  const std::vector<std::string_view>& written_sender_words() const { return sender_words_; }
  std::size_t memory() const;

 private:
  // Words that are walked together: those of a value, or the lines of a file, which several entries may name.
  struct Group {
    WordSource source = WordSource::kValue;
    int field_count = 0;
    std::uint32_t first_place = 0;
    std::vector<std::uint32_t> entries;
  };
  static constexpr std::uint32_t kNotMatched = 0xFFFFFFFF;  // in place of a word's number
  struct FileInUse {
    std::string path;
    std::shared_ptr<const WordFileCopy> copy;  // nullptr: it cannot be opened
  };

  Group& add_group(WordSource source);
  void add_entry(std::uint32_t entry, const FilterSet& set, WordFileCopies& copies,
                 std::map<std::string, std::size_t, std::less<>>& file_groups);
  bool add_to_file(std::uint32_t entry, const std::string& path, const FilterSet& set, WordFileCopies& copies,
                   std::map<std::string, std::size_t, std::less<>>& file_groups);
  std::shared_ptr<const WordFileCopy> copy_in_use(const std::string& path, WordFileCopies& copies);
  void add_value(std::uint32_t entry);
  void compile();
  bool takes_sender(std::uint32_t place) const;
  void add_sender_word(std::uint32_t place);
  void keep_places(const std::vector<std::uint32_t>& number_at, std::size_t words);
  std::size_t group_at(std::uint32_t place) const;
  void collect_hits(std::span<const std::string_view> texts, bool case_sensitive,
                    std::span<const std::string> sender_words, CriterionScratch& scratch) const;
  EntryMatches matches_of(std::uint32_t entry, const CriterionScratch& scratch) const;

  const ListCriterion& criterion_;
  std::span<const ListEntryValue> entries_;
  std::string configuration_;
  bool cached_;
  std::vector<FileInUse> files_;
  std::vector<Group> groups_;
  std::vector<std::uint32_t> group_of_entry_;
  std::vector<std::string_view> words_;         // by place, group after group
  std::vector<std::uint32_t> places_at_;        // by number in the matcher: where its places begin in places_
  std::vector<std::uint32_t> places_;           // ascending for each word
  std::vector<std::string_view> sender_words_;  // distinct, as written
  std::vector<std::vector<std::uint32_t>> sender_places_;
  std::optional<WordMatcher> matcher_;
};

}  // namespace pv
