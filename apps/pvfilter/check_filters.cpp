#include "pvfilter/check_filters.h"

#include "actions/action_table.h"
#include "common/fields.h"
#include "common/files.h"
#include "filters/filter_set.h"
#include "filters/limits.h"
#include "filters/scope_paths.h"
#include "filters/word_file.h"
#include "pvfilter/check_lines.h"

namespace pvfilter {
namespace {

using pv::BoundedText;

std::string in_quotes(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

std::string field_of(std::string_view line, int number) {
  return std::string(pv::find_field(line, "\t", number).value_or(std::string_view()));
}

struct Row {
  const std::string& file;
  int line;
  std::string_view text;
  Findings& findings;

  void add(const std::string& what) const { findings.add(file, line, what); }
};

void check_length(const Row& row, int field, const char* what, std::size_t longest) {
  const std::string text = field_of(row.text, field);
  if (text.size() <= longest) return;
  row.add("field " + std::to_string(field) + ": the " + what + " has " + std::to_string(text.size()) +
          " bytes, of at most " + std::to_string(longest) + "; it is taken as empty");
}

void check_definition(const Row& row, const pv::Directories& directories, const CheckedFilter& filter) {
  const pv::FilterSet server;
  const std::string script = *pv::criteria_script_path(server, directories.configuration, filter.definition);
  const std::string table = pv::criteria_table_path(server, directories.configuration, filter.definition);
  if (pv::file_exists(script)) {
    if (row.findings.first_visit(script)) check_script(directories, script, filter, row.findings);
  } else if (!pv::file_exists(table)) {
    row.add("field 3: there is neither " + script + " nor " + table + "; the filter never fires");
  } else if (row.findings.first_visit(table)) {
    check_criteria_table(directories, table, filter, row.findings);
  }
  pv::FilterDefinition definition;
  definition.definition_name.cut(filter.definition);
  const std::string actions = pv::action_table_path(directories, server, definition);
  if (!pv::file_exists(actions)) {
    row.add("field 3: there is no " + actions + "; the filter does nothing when it fires");
  } else if (row.findings.first_visit(actions)) {
    check_action_table(directories, actions, row.findings);
  }
}

void check_row(const Row& row, const pv::Directories& directories) {
  check_length(row, 1, "name", 63);
  check_length(row, 3, "definition name", 63);
  check_length(row, 5, "display name", 255);
  const std::string definition = field_of(row.text, 3);
  if (definition.empty()) return row.add("field 3: there is no definition name; the filter never fires");
  if (definition.find_first_of("\r\n") != std::string::npos) {
    return row.add("field 3: the definition name is the last field and has the line end in it; end the row with a tab");
  }
  const std::string shown = field_of(row.text, 5);
  check_definition(row, directories,
                   CheckedFilter{in_quotes(shown.substr(0, shown.find_first_of("\r\n"))), definition});
}

bool is_on(const Row& row) {
  if (row.text.find_first_not_of(" \t\r\n") == std::string_view::npos) return false;
  if (row.text.find('\t') == std::string_view::npos) {
    row.add("the row has no tab; it is off");
    return false;
  }
  const std::string status = field_of(row.text, 2);
  check_number(status, 2, "the status", row.file, row.line, row.findings);
  return pv::leading_number(status.size() < pv::kStatusField ? std::string_view(status) : "") != 0;
}

}  // namespace

void check_number(std::string_view text, int field, const char* meaning, std::string_view file, int line,
                  Findings& findings) {
  const std::string_view number = text.substr(0, text.find_last_not_of("\r\n") + 1);
  if (number.empty()) return;
  const bool sign = number[0] == '-' || number[0] == '+';
  if (number.find_first_not_of("0123456789", sign ? 1 : 0) == std::string_view::npos) return;
  findings.add(file, line,
               "field " + std::to_string(field) + ": " + meaning + " " + in_quotes(number) + " is no number; " +
                   std::to_string(pv::leading_number(text)) + " is used");
}

void check_word_file(const pv::Directories& directories, std::string_view value, std::string_view file, int line,
                     Findings& findings) {
  pv::WordFilePath path;
  if (value.empty() || !pv::ResolveWordFile(pv::FilterSet(), directories.configuration, value, path)) return;
  const std::string words(path.view());
  CheckedLines lines(words, findings);
  if (!lines.is_open()) {
    return findings.add(file, line, "the word file " + words + " cannot be read; the value is taken as a word itself");
  }
  if (!findings.first_visit(words)) return;
  while (lines.next()) {
  }
}

int check_filters(const pv::Directories& directories, Findings& findings) {
  const std::string path = pv::filter_table_path(pv::FilterSet(), directories.configuration);
  findings.first_visit(path);
  CheckedLines lines(path, findings);
  if (!lines.is_open()) findings.add(path, 0, "cannot be read; there are no filters");
  int filters = 0;
  while (const std::optional<std::string_view> line = lines.next()) {
    const Row row{path, lines.number(), *line, findings};
    if (!is_on(row)) continue;
    if (filters == pv::kMaxFilters) {
      row.add("there are 100 filters before this row; it and all below are not read");
      break;
    }
    ++filters;
    check_row(row, directories);
  }
  return filters;
}

}  // namespace pvfilter
