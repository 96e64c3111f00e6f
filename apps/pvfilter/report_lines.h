// The "Executed" lines that the agent reports, wherever its settings send them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "pvfilter/server_tree.h"

namespace pvfilter {

// One line: what a filter did to one message. Column names as the report log's header has them.
struct ReportLine {
  std::string message_id;
  std::string filter;                // display name
  std::vector<std::string> actions;  // the executed ones (column Result)
  std::string data;                  // the criterion that was met, as the agent words it
};

// Where the report log stands now, to read what one message adds to it.
class ReportLogPosition {
 public:
  explicit ReportLogPosition(const Server& server);
  // The lines of this message that were added since; empty when the log goes nowhere that can be read.
  std::vector<ReportLine> lines_since(const std::string& message_id) const;

 private:
  const Server& server_;
  FileMarks marks_;
};

// The lines in what the agent printed, when it reports to standard output.
std::vector<ReportLine> printed_report_lines(std::string_view output, const std::string& message_id);

}  // namespace pvfilter
