// Where the files of a scope's filters lie below the configuration directory:
//
//     server       <conf>/FILTERS/FILTER.TAB                    <conf>/FILTERS/CRITERIA/<definition>.{PVS,TAB}
//     postoffice   <conf>/Postoffices/<postoffice>/RULES/...    the same names
//     mailbox      <conf>/Postoffices/<postoffice>/Mailboxes/<mailbox>/RULES/...    no .PVS
//
// Word files lie in <conf>/FILTERS/PATTERNS for the server, else in the scope's RULES directory.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "filters/filter_set.h"

namespace pv {

std::string filter_table_path(const FilterSet& set, std::string_view configuration);
std::string criteria_table_path(const FilterSet& set, std::string_view configuration, std::string_view definition);

// nullopt for a mailbox, whose filters are always tables.
std::optional<std::string> criteria_script_path(const FilterSet& set, std::string_view configuration,
                                                std::string_view definition);

// The directory of word files that a criterion names without a path.
std::string word_file_directory(const FilterSet& set, std::string_view configuration);

// The word file that an empty value stands for, in every scope.
std::string general_word_file_path(std::string_view configuration);

}  // namespace pv
