#include "filters/list_criteria.h"

#include "common/agent_settings.h"
#include "common/fields.h"
#include "filters/criterion_words.h"
#include "filters/word_file.h"

namespace pv {

std::string_view entry_value(const CriterionSlot& criterion, int entry, std::size_t capacity) {
  const std::string_view data = criterion.data;
  if (criterion.entry_count == 1) return data.substr(0, capacity - 1);
  const std::string_view field = find_field(data, "\t", entry + 1).value_or(std::string_view());
  return field.size() < capacity ? field : std::string_view();
}

Words::Words(std::string_view value) : rest_(value), remaining_(count_fields(value, "\t")) {}

std::optional<std::string_view> Words::next() {
  if (remaining_ == 0) return std::nullopt;
  --remaining_;
  const std::size_t end = std::min(rest_.find('\t'), rest_.size());
  const std::string_view word = rest_.substr(0, end);
  rest_.remove_prefix(std::min(end + 1, rest_.size()));
  return word;
}

bool word_file_answers(const ListEntry& entry, const ListSubject& subject, const char* tag, const FilterSet& set,
                       const MatchResults& results) {
  const std::string_view configuration =
      results.message ? results.message->directories.configuration.view() : std::string_view();
  WordFilePath path;
  if (!ResolveWordFile(set, configuration, entry.value, path)) return false;
  const WordFileTest test{subject.text, subject.delimiters, entry.slot, entry.entry, tag};
  if (settings().allow_pattern_caching != 0) return MatchWordFileCached(test, set.patterns, path, entry.match);
  return MatchWordFile(test, path, entry.match);
}

bool record_file_lines(const EntryMatches& found, SlotIndex slot, const char* tag, FilterMatch& match) {
  if (found.source == WordSource::kValue) return false;
  const WordFileTest test{{}, {}, slot, found.entry, tag};
  const bool cached = found.source == WordSource::kCachedFile;
  for (const std::string_view line : found.words) {
    record_line(test, line, cached ? WordFileSource::kCache : WordFileSource::kFile, match);
  }
  return true;
}

void record_word(const ListEntry& entry, std::string_view tag, std::string_view word) {
  ++entry.match.match_count[static_cast<std::size_t>(entry.slot)];
  entry.match.set_matched_text(entry.slot, tag, word);
  entry.match.set_match_value(entry.slot, entry.entry, "1");
}

void set_all_match_values(SlotIndex slot, const CriterionSlot& criterion, std::string_view value, FilterMatch& match) {
  for (int entry = 0; entry < entries_of(criterion); ++entry) match.set_match_value(slot, entry, value);
}

}  // namespace pv
