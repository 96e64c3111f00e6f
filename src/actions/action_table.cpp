#include "actions/action_table.h"

#include <optional>

#include "common/fields.h"
#include "platform/paths.h"

namespace pv {
namespace {

void take_field(std::string_view line, int number, ActionField& field) {
  field.clear();
  split_field(line, "\t", number, field);
}

// The line end would otherwise belong to the last field, which is the keyword when nobody wrote a description.
std::string_view without_line_end(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

std::string action_table_path(const Directories& directories, const FilterSet& set, const FilterDefinition& filter) {
  const std::string_view root = directories.configuration;
  const std::string file = std::string(filter.definition_name.view()) + ".TAB";
  switch (set.scope()) {
    case Scope::kPostoffice:
      return platform::join_path({root, "Postoffices", set.postoffice, "RULES", "ACTIONS", file});
    case Scope::kMailbox:
      return platform::join_path(
          {root, "Postoffices", set.postoffice, "Mailboxes", set.mailbox, "RULES", "ACTIONS", file});
    case Scope::kSystem:
      break;
  }
  return platform::join_path({root, "FILTERS", "ACTIONS", file});
}

bool ActionTable::open(std::string_view path) {
  return file_.open(path, platform::FileMode::kText);
}

bool ActionTable::next(ActionLine& line) {
  const std::optional<std::string_view> bytes = file_.read_line(kActionLine);
  if (!bytes) return false;
  const std::string_view text = without_line_end(until_nul(*bytes));
  ActionField status;
  take_field(text, 1, status);
  line.status = leading_number(status);
  take_field(text, 3, line.data);
  take_field(text, 4, line.keyword);
  take_field(text, 5, line.description);
  return true;
}

}  // namespace pv
