#include "pvfilter/fired_filters.h"

#include <algorithm>

#include "actions/action_table.h"
#include "actions/one_line.h"
#include "common/text_search.h"
#include "filters/filter_table.h"
#include "platform/output_capture.h"

namespace pvfilter {
namespace {

constexpr std::string_view kFiredLead = "All for rule (";
constexpr std::string_view kFiredMiddle = ") satisfied. Executing associated action (";

std::vector<FiredFilter> printed_filters(std::string_view output) {
  std::vector<FiredFilter> fired;
  for (std::size_t at = output.find(kFiredLead); at != std::string_view::npos; at = output.find(kFiredLead, at)) {
    at += kFiredLead.size();
    const std::size_t middle = output.find(kFiredMiddle, at);
    if (middle == std::string_view::npos) break;
    const std::size_t definition = middle + kFiredMiddle.size();
    const std::size_t end = output.find(").\n", definition);
    if (end == std::string_view::npos) break;
    FiredFilter& filter = fired.emplace_back();
    filter.name = output.substr(at, middle - at);
    filter.definition_name = output.substr(definition, end - definition);
    at = end;
  }
  return fired;
}

// The server's filters as the agent loads them.
pv::FilterSet load_filters() {
  const pv::platform::OutputCapture silent;
  pv::FilterSet set;
  pv::LoadFilterSet(set);
  return set;
}

const pv::FilterDefinition* find_definition(const pv::FilterSet& set, const FiredFilter& fired) {
  for (const pv::FilterDefinition& filter : set.filters) {
    if (filter.name.view() == fired.name && filter.definition_name.view() == fired.definition_name) return &filter;
  }
  return nullptr;
}

// As reports name a filter: by its display name.
std::string reported_name(const pv::FilterDefinition& filter) {
  const std::string_view name = filter.display_name;
  return pv::in_one_column(name.substr(0, name.find_last_not_of("\r\n") + 1));
}

std::vector<std::string> enabled_actions(const Server& server, const pv::FilterSet& set,
                                         const pv::FilterDefinition& filter) {
  std::vector<std::string> keywords;
  pv::ActionTable table;
  if (!table.open(pv::action_table_path(server.directories, set, filter))) return keywords;
  pv::ActionLine line;
  while (table.next(line)) {
    if (!line.enabled()) continue;
    keywords.emplace_back(line.keyword.view());
    if (pv::equals_nocase(line.keyword, "STOP_PROCESSING")) break;  // rows after it are not read
  }
  return keywords;
}

std::vector<std::string> without(std::vector<std::string> keywords, const std::vector<std::string>& executed) {
  for (const std::string& keyword : executed) {
    const auto found = std::find(keywords.begin(), keywords.end(), keyword);
    if (found != keywords.end()) keywords.erase(found);
  }
  return keywords;
}

}  // namespace

std::vector<FiredFilter> find_fired_filters(const Server& server, std::string_view output,
                                            const std::vector<ReportLine>& lines) {
  std::vector<FiredFilter> fired = printed_filters(output);
  const pv::FilterSet set = load_filters();
  const bool reported = server.log_mode == 1 || server.log_mode == 2;
  std::size_t next = 0;
  for (FiredFilter& filter : fired) {
    const pv::FilterDefinition* definition = find_definition(set, filter);
    if (definition == nullptr) continue;  // the table was changed since the agent read it
    // A filter without executed actions has no line, so the lines are matched in order by the filter's name.
    if (next < lines.size() && lines[next].filter == reported_name(*definition)) filter.report = lines[next++];
    if (!reported) continue;
    filter.not_done = without(enabled_actions(server, set, *definition),
                              filter.report ? filter.report->actions : std::vector<std::string>());
  }
  return fired;
}

}  // namespace pvfilter
