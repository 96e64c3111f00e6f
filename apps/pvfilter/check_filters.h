// Checking the server's filters: the filter table and what its rows lead to.
#pragma once

#include <string>

#include "common/agent_settings.h"
#include "pvfilter/check_findings.h"

namespace pvfilter {

// Returns how many filters the agent will load.
int check_filters(const pv::Directories& directories, Findings& findings);

// The criteria table or decision script, and the action table, of one filter.
struct CheckedFilter {
  std::string shown;  // as messages name it
  std::string definition;
};
void check_criteria_table(const pv::Directories& directories, const std::string& path, const CheckedFilter& filter,
                          Findings& findings);
void check_script(const pv::Directories& directories, const std::string& path, const CheckedFilter& filter,
                  Findings& findings);
void check_action_table(const pv::Directories& directories, const std::string& path, Findings& findings);

// A word file that a criterion refers to at `file`:`line`.
void check_word_file(const pv::Directories& directories, std::string_view value, std::string_view file, int line,
                     Findings& findings);

// Says so when `text` should begin with a number and does not.
void check_number(std::string_view text, int field, const char* meaning, std::string_view file, int line,
                  Findings& findings);

}  // namespace pvfilter
