#include "actions/executed_line.h"

#include <algorithm>
#include <string>

#include "actions/one_line.h"

namespace pv {

ReportLine executed_line(const MessageContext& message, const FilterSet& set, const FilterDefinition& filter,
                         std::string_view criteria_text, const ExecutedActions& executed) {
  std::string line = "Executed";
  for (const std::string_view column :
       {message.message_id.view(), message.connector.view(), without_line_ends(filter.display_name), executed.view(),
        set.postoffice.view(), message.envelope.sender.view(), message.envelope.client_ip.view(), criteria_text,
        message.envelope.subject.view()}) {
    line += '\t';
    line += in_one_column(column);
  }
  line.resize(std::min(line.size(), ReportLine::kCapacity - 2));  // room for the line feed and the terminator
  ReportLine result;
  copy_bounded(result, line + '\n');
  return result;
}

}  // namespace pv
