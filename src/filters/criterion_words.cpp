#include "filters/criterion_words.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "filters/list_criteria.h"
#include "filters/match_pattern.h"
#include "filters/sender_token.h"

namespace pv {

CriterionWords::CriterionWords(const ListCriterion& criterion, std::span<const ListEntryValue> entries,
                               const FilterSet& set, std::string_view configuration, bool cached,
                               WordFileCopies& copies)
    : criterion_(criterion), entries_(entries), configuration_(configuration), cached_(cached) {
  std::map<std::string, std::size_t, std::less<>> file_groups;
  for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) add_entry(entry, set, copies, file_groups);
  compile();
}

CriterionWords::Group& CriterionWords::add_group(WordSource source) {
  Group& group = groups_.emplace_back();
  group.source = source;
  group.first_place = static_cast<std::uint32_t>(words_.size());
  return group;
}

void CriterionWords::add_entry(std::uint32_t entry, const FilterSet& set, WordFileCopies& copies,
                               std::map<std::string, std::size_t, std::less<>>& file_groups) {
  const bool may_name_file = rules_of(criterion_.evaluator).file_tag != nullptr;
  WordFilePath path;
  const bool in_file = may_name_file && ResolveWordFile(set, configuration_, entries_[entry].value, path) &&
                       add_to_file(entry, path.c_str(), set, copies, file_groups);
  if (!in_file) add_value(entry);
}

std::shared_ptr<const WordFileCopy> CriterionWords::copy_in_use(const std::string& path, WordFileCopies& copies) {
  const auto same = [&](const FileInUse& file) { return file.path == path; };
  const auto known = std::find_if(files_.begin(), files_.end(), same);
  if (known != files_.end()) return known->copy;
  return files_.emplace_back(FileInUse{path, copies.current(path)}).copy;
}

// False when the file cannot be had.
bool CriterionWords::add_to_file(std::uint32_t entry, const std::string& path, const FilterSet& set,
                                 WordFileCopies& copies, std::map<std::string, std::size_t, std::less<>>& file_groups) {
  const auto known = file_groups.find(path);
  if (known != file_groups.end()) {
    group_of_entry_.push_back(static_cast<std::uint32_t>(known->second));
    groups_[known->second].entries.push_back(entry);
    return true;
  }
  if (cached_) {
    const PatternFile* const file = set.patterns.find(path);
    if (file == nullptr) return false;
    add_group(WordSource::kCachedFile);
    words_.insert(words_.end(), file->lines.begin(), file->lines.end());
  } else {
    const std::shared_ptr<const WordFileCopy> copy = copy_in_use(path, copies);
    if (copy == nullptr) return false;
    add_group(WordSource::kFile);
    words_.insert(words_.end(), copy->lines.begin(), copy->lines.end());
  }
  groups_.back().entries.push_back(entry);
  group_of_entry_.push_back(static_cast<std::uint32_t>(groups_.size() - 1));
  file_groups.emplace(path, groups_.size() - 1);
  return true;
}

void CriterionWords::add_value(std::uint32_t entry) {
  Group& group = add_group(WordSource::kValue);
  group_of_entry_.push_back(static_cast<std::uint32_t>(groups_.size() - 1));
  group.entries.push_back(entry);
  Words words(entries_[entry].value);
  group.field_count = words.remaining();
  while (const std::optional<std::string_view> word = words.next()) words_.push_back(*word);
}

// A message completes these words with its sender.
bool CriterionWords::takes_sender(std::uint32_t place) const {
  return rules_of(criterion_.evaluator).sender_capacity > 0 && holds_sender_token(words_[place]) &&
         groups_[group_at(place)].source == WordSource::kValue;
}

void CriterionWords::add_sender_word(std::uint32_t place) {
  const auto known = std::find(sender_words_.begin(), sender_words_.end(), words_[place]);
  const std::size_t number = static_cast<std::size_t>(known - sender_words_.begin());
  if (known == sender_words_.end()) {
    sender_words_.push_back(words_[place]);
    sender_places_.emplace_back();
  }
  sender_places_[number].push_back(place);
}

// Numbers the distinct words and keeps the places of each.
void CriterionWords::compile() {
  words_.shrink_to_fit();
  std::unordered_map<std::string_view, std::uint32_t> numbers;
  numbers.reserve(words_.size());
  std::vector<std::string_view> distinct;
  std::vector<std::uint32_t> number_at(words_.size(), kNotMatched);
  for (std::uint32_t place = 0; place < words_.size(); ++place) {
    if (words_[place].empty()) continue;
    if (takes_sender(place)) {
      add_sender_word(place);
      continue;
    }
    const auto [found, added] = numbers.emplace(words_[place], static_cast<std::uint32_t>(distinct.size()));
    if (added) distinct.push_back(words_[place]);
    number_at[place] = found->second;
  }
  keep_places(number_at, distinct.size());
  distinct.shrink_to_fit();
  if (!distinct.empty()) matcher_.emplace(std::move(distinct), criterion_.delimiters);
}

void CriterionWords::keep_places(const std::vector<std::uint32_t>& number_at, std::size_t words) {
  places_at_.assign(words + 1, 0);
  for (const std::uint32_t number : number_at) {
    if (number != kNotMatched) ++places_at_[number + 1];
  }
  for (std::size_t i = 1; i < places_at_.size(); ++i) places_at_[i] += places_at_[i - 1];
  places_.resize(places_at_.back());
  std::vector<std::uint32_t> next(places_at_.begin(), places_at_.end() - 1);
  for (std::uint32_t place = 0; place < number_at.size(); ++place) {
    if (number_at[place] != kNotMatched) places_[next[number_at[place]]++] = place;
  }
}

bool CriterionWords::files_are_current(WordFileCopies& copies) const {
  return std::all_of(files_.begin(), files_.end(),
                     [&](const FileInUse& file) { return copies.current(file.path) == file.copy; });
}

std::size_t CriterionWords::group_at(std::uint32_t place) const {
  const auto behind = std::upper_bound(groups_.begin(), groups_.end(), place,
                                       [](std::uint32_t p, const Group& group) { return p < group.first_place; });
  return static_cast<std::size_t>(behind - groups_.begin()) - 1;
}

void CriterionWords::collect_hits(std::span<const std::string_view> texts, bool case_sensitive,
                                  std::span<const std::string> sender_words, CriterionScratch& scratch) const {
  scratch.hits.clear();
  for (const std::string_view text : texts) {
    scratch.matches.clear();
    if (matcher_) matcher_->find(text, case_sensitive, scratch.matcher, scratch.matches);
    for (const std::uint32_t number : scratch.matches) {
      for (std::uint32_t i = places_at_[number]; i < places_at_[number + 1]; ++i) {
        scratch.hits.push_back({places_[i], 0});
      }
    }
    for (std::uint32_t i = 0; i < sender_words.size(); ++i) {
      if (!MatchPattern(text, sender_words[i], criterion_.delimiters, case_sensitive)) continue;
      for (const std::uint32_t place : sender_places_[i]) scratch.hits.push_back({place, i + 1});
    }
  }
  if (scratch.hits.size() < 2) return;
  std::sort(scratch.hits.begin(), scratch.hits.end());
  scratch.hits.erase(std::unique(scratch.hits.begin(), scratch.hits.end()), scratch.hits.end());
}

EntryMatches CriterionWords::matches_of(std::uint32_t entry, const CriterionScratch& scratch) const {
  const std::uint32_t number = group_of_entry_[entry];
  const Group& group = groups_[number];
  const bool is_last = number + 1 == groups_.size();
  const std::uint32_t end = is_last ? static_cast<std::uint32_t>(words_.size()) : groups_[number + 1].first_place;
  const auto first =
      std::lower_bound(scratch.hits.begin(), scratch.hits.end(), CriterionScratch::Hit{group.first_place, 0});
  const auto last = std::lower_bound(first, scratch.hits.end(), CriterionScratch::Hit{end, 0});
  const std::span<const std::string_view> all(scratch.words);
  return {entries_[entry].filter, entries_[entry].entry, group.source, group.field_count,
          all.subspan(static_cast<std::size_t>(first - scratch.hits.begin()), static_cast<std::size_t>(last - first))};
}

std::span<const EntryMatches> CriterionWords::find(std::span<const std::string_view> texts, bool case_sensitive,
                                                   Entries which, std::span<const std::string> sender_words,
                                                   CriterionScratch& scratch) const {
  collect_hits(texts, case_sensitive, sender_words, scratch);
  if (which == Entries::kMatching && scratch.hits.empty()) return {};
  scratch.words.clear();
  scratch.entries.clear();
  scratch.found.clear();
  std::uint32_t next_group = 0;
  for (const CriterionScratch::Hit& hit : scratch.hits) {
    scratch.words.push_back(hit.sender_word > 0 ? std::string_view(sender_words[hit.sender_word - 1])
                                                : words_[hit.place]);
    const std::uint32_t group = static_cast<std::uint32_t>(group_at(hit.place));
    if (which == Entries::kAll || group < next_group) continue;
    next_group = group + 1;
    scratch.entries.insert(scratch.entries.end(), groups_[group].entries.begin(), groups_[group].entries.end());
  }
  if (which == Entries::kAll) {
    for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) {
      scratch.found.push_back(matches_of(entry, scratch));
    }
  } else {
    std::sort(scratch.entries.begin(), scratch.entries.end());
    for (const std::uint32_t entry : scratch.entries) scratch.found.push_back(matches_of(entry, scratch));
  }
  return scratch.found;
}

std::size_t CriterionWords::memory() const {
  std::size_t sum = words_.capacity() * sizeof(std::string_view) + (places_at_.capacity() + places_.capacity()) * 4;
  for (const FileInUse& file : files_) {
    if (file.copy) sum += file.copy->bytes.capacity() + file.copy->lines.capacity() * sizeof(std::string_view);
  }
  return sum + (matcher_ ? matcher_->memory() : 0);
}

}  // namespace pv
