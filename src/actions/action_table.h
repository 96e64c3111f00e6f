// The action table of one filter, a tab-separated text file named by the filter's definition name:
//
//     status <tab> - <tab> data <tab> keyword <tab> description
//
// One action a line, in the order in which they are carried out. Lines of more than 2047 bytes are read in pieces, each
// a line of its own.
#pragma once

#include <cstddef>
#include <string>

#include "common/agent_settings.h"
#include "common/bounded_text.h"
#include "filters/filter_set.h"
#include "platform/file.h"

namespace pv {

inline constexpr std::size_t kActionLine = 2048;  // bytes of a line, terminator included
using ActionField = BoundedText<1024>;            // a longer field is empty

struct ActionLine {
  int status = 0;  // 1: the action is enabled
  ActionField data;
  ActionField keyword;
  ActionField description;

  bool enabled() const { return status == 1; }
};

// Below the configuration directory, at the place that belongs to the set's scope.
std::string action_table_path(const Directories& directories, const FilterSet& set, const FilterDefinition& filter);

class ActionTable {
 public:
  // False when the table is missing or cannot be read: the filter has no actions.
  [[nodiscard]] bool open(std::string_view path);

  // Reads the next action; false at the end of the table. A line with fewer fields has its last one for all that are
  // missing; one without a tab is a status alone.
  [[nodiscard]] bool next(ActionLine& line);

 private:
  platform::InputFile file_;
};

}  // namespace pv
