// The keywords of the actions that were carried out for one filter, as the report log shows them.
#pragma once

#include <string_view>

#include "common/bounded_text.h"

namespace pv {

using ExecutedActions = BoundedText<2048>;  // "ADD_HEADER,STOP_PROCESSING"; a keyword that does not fit is left out

inline void record_executed(std::string_view keyword, ExecutedActions& executed) {
  const std::string_view separator = executed.empty() ? "" : ",";
  if (executed.size() + separator.size() + keyword.size() >= ExecutedActions::kCapacity) return;
  append_bounded(executed, separator);
  append_bounded(executed, keyword);
}

}  // namespace pv
