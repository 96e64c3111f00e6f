#include "filters/scope_paths.h"

#include "platform/paths.h"

namespace pv {
namespace {

using platform::join_path;

std::string rules_directory(const FilterSet& set, std::string_view configuration) {
  switch (set.scope()) {
    case Scope::kSystem:
      break;
    case Scope::kPostoffice:
      return join_path({configuration, "Postoffices", set.postoffice, "RULES"});
    case Scope::kMailbox:
      return join_path({configuration, "Postoffices", set.postoffice, "Mailboxes", set.mailbox, "RULES"});
  }
  return join_path({configuration, "FILTERS"});
}

std::string script_name(std::string_view definition) {
  return std::string(definition) + ".PVS";
}

}  // namespace

std::string filter_table_path(const FilterSet& set, std::string_view configuration) {
  return join_path({rules_directory(set, configuration), "FILTER.TAB"});
}

std::string criteria_table_path(const FilterSet& set, std::string_view configuration, std::string_view definition) {
  return join_path({rules_directory(set, configuration), "CRITERIA", std::string(definition) + ".TAB"});
}

std::optional<std::string> criteria_script_path(const FilterSet& set, std::string_view configuration,
                                                std::string_view definition) {
  switch (set.scope()) {
    case Scope::kSystem:
      return join_path({configuration, "FILTERS", "CRITERIA", script_name(definition)});
    case Scope::kPostoffice:
      return join_path({configuration, "postoffices", set.postoffice, "rules", "CRITERIA", script_name(definition)});
    case Scope::kMailbox:
      break;
  }
  return std::nullopt;
}

std::string word_file_directory(const FilterSet& set, std::string_view configuration) {
  if (set.scope() == Scope::kSystem) return join_path({configuration, "FILTERS", "PATTERNS"});
  return rules_directory(set, configuration);
}

std::string general_word_file_path(std::string_view configuration) {
  return join_path({configuration, "FILTERS", "PATTERNS", "MTAFILTER-GENERAL.TXT"});
}

}  // namespace pv
