#include <algorithm>
#include <string>
#include <vector>

#include "actions/notification_template.h"
#include "actions/system_actions.h"
#include "common/fields.h"
#include "common/text_search.h"
#include "pvfilter/check_filters.h"
#include "pvfilter/check_lines.h"

namespace pvfilter {
namespace {

constexpr std::size_t kLongestField = 1023;

struct ActionRow {
  const pv::Directories& directories;
  std::string_view data;
  const std::string& file;
  int line;
  Findings& findings;

  void add(const std::string& what) const { findings.add(file, line, "field 3: " + what); }
};

void check_template(const ActionRow& row, std::string_view name) {
  if (name.empty()) return;
  const std::string path = pv::notification_template_path(row.directories.configuration, name);
  CheckedLines lines(path, row.findings);
  if (!lines.is_open()) return row.add("the template " + path + " cannot be read; the default text is sent");
  if (!row.findings.first_visit(path)) return;
  while (lines.next()) {
  }
}

void check_template_name(const ActionRow& row) {
  check_template(row, row.data);
}

void check_reference(const ActionRow& row) {
  if (!row.data.starts_with("<REFERENCE>")) return row.add("it does not begin with <REFERENCE>; the action fails");
  if (!pv::extract_between(row.data, "<ADDRESS>", "</ADDRESS>")) {
    row.add("there is no <ADDRESS>…</ADDRESS>; the action fails");
  }
  if (const auto name = pv::extract_between(row.data, "<FILE>", "</FILE>")) check_template(row, name->text);
}

void check_header(const ActionRow& row) {
  const std::string_view name = row.data.substr(0, row.data.find('|'));
  if (name.empty()) return row.add("there is no header name; the action fails");
  if (name.find_first_of(" :") != std::string_view::npos) row.add("a header name holds no blank and no colon");
  if (name.size() == row.data.size()) row.add("there is no \"|\" between name and value; the value is empty");
}

void check_address(const ActionRow& row) {
  if (row.data.empty()) row.add("there is no address");
}

void check_program(const ActionRow& row) {
  if (row.data.substr(0, row.data.find('|')).empty()) row.add("there is no program; the action fails");
}

void check_mode(const ActionRow& row) {
  const int mode = pv::leading_number(row.data);
  if (mode < 0 || mode > 2) row.add("the mode is none of 0, 1 and 2; nothing is changed");
  check_number(row.data, 3, "the mode", row.file, row.line, row.findings);
}

bool is_action(std::string_view keyword) {
  const std::vector<std::string_view> known = pv::system_action_keywords();
  return std::any_of(known.begin(), known.end(),
                     [&](std::string_view action) { return pv::equals_nocase(action, keyword); });
}

struct DataCheck {
  std::string_view keyword;
  void (*check)(const ActionRow& row);
};
constexpr DataCheck kDataChecks[] = {
    {"ADD_HEADER", check_header},
    {"NOTIFY_SENDER", check_template_name},
    {"NOTIFY_RECIPIENTS", check_template_name},
    {"NOTIFY_ADDRESS", check_reference},
    {"FORWARD_TO_ADDRESS", check_address},
    {"EXECUTE_APPLICATION", check_program},
    {"APPEND_ANNOTATIONS", check_mode},
};

void check_action(std::string_view line, ActionRow row) {
  const std::string_view keyword = pv::find_field(line, "\t", 4).value_or(std::string_view());
  row.data = pv::find_field(line, "\t", 3).value_or(std::string_view());
  if (!is_action(keyword)) {
    return row.findings.add(row.file, row.line,
                            "field 4: \"" + std::string(keyword) + "\" is no action; nothing is done");
  }
  if (row.data.size() > kLongestField) return row.add("it has more than 1023 bytes; it is taken as empty");
  for (const DataCheck& check : kDataChecks) {
    if (pv::equals_nocase(keyword, check.keyword)) check.check(row);
  }
}

}  // namespace

void check_action_table(const pv::Directories& directories, const std::string& path, Findings& findings) {
  CheckedLines lines(path, findings);
  if (!lines.is_open()) return findings.add(path, 0, "cannot be read; nothing is done");
  while (const std::optional<std::string_view> read = lines.next()) {
    const std::string_view line = read->substr(0, read->find_first_of("\r\n"));
    if (line.empty()) continue;
    const std::string_view status = line.substr(0, line.find('\t'));
    check_number(status, 1, "the status", path, lines.number(), findings);
    if (pv::leading_number(status) != 1) continue;
    check_action(line, {directories, {}, path, lines.number(), findings});
  }
}

}  // namespace pvfilter
