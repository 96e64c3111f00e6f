#include "filters/criteria_table.h"

#include <algorithm>
#include <optional>
#include <string>

#include "common/agent_settings.h"
#include "common/fields.h"
#include "filters/word_file.h"
#include "platform/file.h"

namespace pv {
namespace {

std::int32_t read_status(std::string_view line) {
  BoundedText<kStatusField> field;
  split_field(line, "\t", 1, field);
  return leading_number(field);
}

std::string read_values(std::string_view line) {
  BoundedText<kTableLine> field;
  split_field(line, "\t", 3, field);
  std::string values(field.view());
  std::replace(values.begin(), values.end(), ',', '\t');
  return values;
}

// A criterion in use needs at least one match. A line without the field leaves the minimum at 1, in use or not.
std::int32_t read_minimum(std::string_view line, std::int32_t status) {
  BoundedText<kStatusField> field;
  if (!split_field(line, "\t", 6, field)) return 1;
  const std::int32_t minimum = leading_number(field);
  return status == 1 ? std::max(minimum, 1) : minimum;
}

// An empty value means the general word file when it is evaluated, but that one is never loaded with a table.
void cache_word_file(std::string_view values, FilterSet& set) {
  if (settings().allow_pattern_caching == 0 || values.empty()) return;
  WordFilePath path;
  if (!ResolveWordFile(set, current_directories().configuration, values, path)) return;
  set.patterns.load(path, "Loading %s into pattern cache from simple filter\n");
}

void fill_slot(std::string_view line, FilterSet& set, CriterionSlot& slot) {
  ++slot.entry_count;
  slot.status = read_status(line);
  slot.data = read_values(line);
  if (slot.status == 1) cache_word_file(slot.data, set);
  slot.minimum_matches = read_minimum(line, slot.status);
}

}  // namespace

void load_criteria_table(std::string_view path, FilterSet& set, FilterDefinition& filter) {
  platform::InputFile table;
  if (!table.open(path, platform::FileMode::kText)) return;
  for (CriterionSlot& slot : filter.slots) {
    const std::optional<std::string_view> line = table.read_line(kTableLine);
    if (!line) return;
    fill_slot(until_nul(*line), set, slot);
  }
}

}  // namespace pv
