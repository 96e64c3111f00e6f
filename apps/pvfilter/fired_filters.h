// Which filters fired on a message, and what became of their actions.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pvfilter/report_lines.h"
#include "pvfilter/server_tree.h"

namespace pvfilter {

// A filter that fired, as the agent printed it, with its line of the report log when there is one.
struct FiredFilter {
  std::string name;             // first column of the filter table
  std::string definition_name;  // names its criteria and action tables
  std::optional<ReportLine> report;
  // Enabled rows of the action table that the report does not name as executed: they failed, or are not available.
  std::vector<std::string> not_done;
};

// The filters that `output`, what the agent printed for one message, names, in their order, each with its own of the
// message's report lines.
std::vector<FiredFilter> find_fired_filters(const Server& server, std::string_view output,
                                            const std::vector<ReportLine>& lines);

}  // namespace pvfilter
