#include "filters/filter_table.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/agent_settings.h"
#include "common/fields.h"
#include "common/files.h"
#include "common/output.h"
#include "filters/compiled_filters.h"
#include "filters/criteria_table.h"
#include "filters/scope_paths.h"
#include "filters/script_tokens.h"
#include "platform/file.h"

namespace pv {
namespace {

bool row_is_enabled(std::string_view line) {
  BoundedText<kStatusField> status;
  split_field(line, "\t", 2, status);
  return leading_number(status) != 0;
}

// Filter indices count from the set's first record, so records that a reset no longer counts have to go first.
void drop_uncounted_filters(FilterSet& set) {
  const std::size_t counted = static_cast<std::size_t>(std::max(set.filter_count, 0));
  if (counted < set.filters.size()) set.filters.resize(counted);
  set.filter_count = static_cast<std::int32_t>(set.filters.size());
}

FilterDefinition& add_filter(FilterSet& set, std::string_view line) {
  FilterDefinition& filter = set.filters.emplace_back();
  ++set.filter_count;
  split_field(line, "\t", 1, filter.name);
  split_field(line, "\t", 3, filter.definition_name);
  split_field(line, "\t", 5, filter.display_name);
  return filter;
}

void load_script(std::string_view path, FilterSet& set, FilterDefinition& filter) {
  filter.is_script = true;
  set.has_script_filters = true;
  std::optional<std::string> text = platform::read_whole_file(path, kLargestScript);
  if (text) filter.script_text = until_nul(*text);
  ParseScriptFilter(set, filter.script_text);
}

void load_criteria(std::string_view configuration, FilterSet& set, FilterDefinition& filter) {
  const std::optional<std::string> script = criteria_script_path(set, configuration, filter.definition_name);
  if (script && file_exists(*script)) {
    load_script(*script, set, filter);
  } else {
    load_criteria_table(criteria_table_path(set, configuration, filter.definition_name), set, filter);
  }
}

void load_rows(platform::InputFile& table, std::string_view configuration, FilterSet& set) {
  while (const std::optional<std::string_view> bytes = table.read_line(kTableLine)) {
    const std::string_view line = until_nul(*bytes);
    if (!row_is_enabled(line)) continue;
    if (set.filter_count >= kMaxFilters) {
      print_text("Too Many Filters Defined\r\n");
      return;
    }
    load_criteria(configuration, set, add_filter(set, line));
  }
}

void announce_release(std::int32_t filter_count) {
  print("Releasing %d Filters\n", filter_count);
  for (FilterIndex i = 1; i <= filter_count; ++i) print("Releasing Filter %ld\n", static_cast<long>(i));
}

}  // namespace

void ResetFilterSet(FilterSet& set) {
  set.filter_count = 0;
  set.has_script_filters = false;
  set.compiled.reset();
}

void LoadFilterSet(FilterSet& set) {
  drop_uncounted_filters(set);
  const Directories directories = current_directories();
  platform::InputFile table;
  if (table.open(filter_table_path(set, directories.configuration), platform::FileMode::kText)) {
    load_rows(table, directories.configuration, set);
  }
  compile_filters(set);
  print("Loaded %d Filters\n", set.filter_count);
}

void ReleaseFilterSet(FilterSet& set) {
  announce_release(set.filter_count);
  set.filters = std::vector<FilterDefinition>();
  set.compiled.reset();  // before the word files, which it uses
  set.patterns.clear();
}

void ReleaseFilterSet(std::shared_ptr<const FilterSet>& set) {
  announce_release(set ? set->filter_count : 0);
  set.reset();
}

}  // namespace pv
