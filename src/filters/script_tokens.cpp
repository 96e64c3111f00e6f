#include "filters/script_tokens.h"

#include <optional>
#include <string>

#include "common/agent_settings.h"
#include "common/output.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "filters/word_file.h"

namespace pv {
namespace {

constexpr std::string_view kWhiteSpace = " \r\n\t";
constexpr std::string_view kNoCondition = "\r";

struct Condition {
  std::string_view text;
  std::optional<std::size_t> after;  // where parsing goes on; nullopt: the condition is not closed, parsing ends
};

//     [PV_SUBJECT] , "free")     white space, a comma, white space, a quoted text
//     [PV_SUBJECT], free)        unquoted, the text begins at the second character after the "]": " free"
//
// `position` is the one after the "]".
Condition read_condition(std::string_view script, std::size_t position) {
  const std::size_t comma = script.find_first_not_of(kWhiteSpace, position);
  if (comma == std::string_view::npos || script[comma] != ',') return {kNoCondition, position};

  const std::size_t start = script.find_first_not_of(kWhiteSpace, comma + 1);
  const bool quoted = start != std::string_view::npos && script[start] == '"';
  const std::size_t from = quoted ? start : position + 1;
  const std::optional<Extract> found =
      quoted ? extract_between(script.substr(from), "\"", "\"") : extract_between(script.substr(from), {}, ")");
  if (!found) return {{}, std::nullopt};
  return {found->text, from + found->after};
}

std::optional<SlotIndex> slot_named(std::string_view name) {
  for (SlotIndex slot = 0; slot < kSlotCount; ++slot) {
    if (equals_nocase(kCriteriaKeywords[static_cast<std::size_t>(slot)], name)) return slot;
  }
  return std::nullopt;
}

void cache_word_file(std::string_view condition, FilterSet& set) {
  if (settings().allow_pattern_caching == 0) return;
  WordFilePath path;
  if (!ResolveWordFile(set, current_directories().configuration, condition, path)) return;
  set.patterns.load(path, "Loading %s into pattern cache\n");
}

void add_entry(std::string_view condition, SlotIndex slot, FilterSet& set) {
  CriterionSlot& criterion = set.filter(set.filter_count).slots[static_cast<std::size_t>(slot)];
  if (criterion.entry_count >= kMaxEntries) return;
  ++criterion.entry_count;
  criterion.status = 1;
  print("Setting Critieria:%ld:%s\n", static_cast<long>(slot), std::string(condition).c_str());
  cache_word_file(condition, set);
  if (!criterion.data.empty()) criterion.data += '\t';
  criterion.data += condition;
}

}  // namespace

void ParseScriptFilter(FilterSet& set, std::string_view script_text) {
  if (set.filter_count < 1) return;
  const std::string_view script = until_nul(script_text);
  std::optional<std::size_t> position = 0;
  while (position) {
    const std::optional<Extract> token = extract_between(script.substr(*position), "[PV_", "]");
    if (!token) return;
    *position += token->after;
    if (token->text.size() > kScriptTokenName) continue;
    const Condition condition = read_condition(script, *position);
    position = condition.after;
    if (const std::optional<SlotIndex> slot = slot_named(token->text)) add_entry(condition.text, *slot, set);
  }
}

}  // namespace pv
