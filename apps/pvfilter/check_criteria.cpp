#include "common/fields.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "pvfilter/check_filters.h"
#include "pvfilter/check_lines.h"

namespace pvfilter {
namespace {

constexpr pv::Slot kNumberCriteria[] = {pv::kSize, pv::kSenderAuth};
constexpr pv::Slot kListsWithoutWordFile[] = {pv::kHasAttachmentsMatching};

template <std::size_t N>
bool is_one_of(const pv::Slot (&slots)[N], int slot) {
  for (const pv::Slot candidate : slots) {
    if (candidate == slot) return true;
  }
  return false;
}

// One line of a criteria table that is in use.
void check_criterion(const pv::Directories& directories, std::string_view line, int slot, const std::string& path,
                     int number, Findings& findings) {
  const std::string_view values = pv::find_field(line, "\t", 3).value_or(std::string_view());
  if (values.find_first_of("\r\n") != std::string_view::npos) {
    findings.add(path, number,
                 "field 3: the values are the last field and have the line end in them; end the row with a tab");
  } else if (values.starts_with(',') && values.size() > 1) {
    findings.add(path, number, "field 3: the first value is empty; the last one is lost");
  }
  if (is_one_of(kNumberCriteria, slot)) check_number(values, 3, "the value", path, number, findings);
  if (!is_one_of(kListsWithoutWordFile, slot)) check_word_file(directories, values, path, number, findings);
  if (pv::count_fields(line, "\t") > 3) {
    check_number(pv::find_field(line, "\t", 6).value_or(std::string_view()), 6, "the minimum", path, number, findings);
  }
}

void check_keyword(std::string_view line, std::string_view expected, const std::string& path, int number,
                   Findings& findings) {
  const std::string_view keyword = pv::find_field(line, "\t", 2).value_or(std::string_view());
  for (const std::string_view known : pv::kCriteriaKeywords) {
    if (!pv::equals_nocase(keyword, known) || pv::equals_nocase(keyword, expected)) continue;
    findings.add(path, number,
                 "field 2: \"" + std::string(keyword) + "\" on the line of " + std::string(expected) +
                     "; the line number decides which criterion it is");
  }
}

}  // namespace

void check_criteria_table(const pv::Directories& directories, const std::string& path, const CheckedFilter& filter,
                          Findings& findings) {
  CheckedLines lines(path, findings);
  if (!lines.is_open()) return findings.add(path, 0, "cannot be read; the filter " + filter.shown + " never fires");
  int in_use = 0;
  int slot = 0;
  for (; slot < pv::kSlotCount; ++slot) {
    const std::optional<std::string_view> line = lines.next();
    if (!line) break;
    const std::string_view status = pv::find_field(*line, "\t", 1).value_or(*line);
    check_number(status, 1, "the status", path, lines.number(), findings);
    check_keyword(*line, pv::kCriteriaKeywords[static_cast<std::size_t>(slot)], path, lines.number(), findings);
    if (pv::leading_number(status) != 1) continue;
    ++in_use;
    check_criterion(directories, *line, slot, path, lines.number(), findings);
  }
  if (in_use == 0) findings.add(path, 0, "no criterion is in use; the filter " + filter.shown + " never fires");
  while (const std::optional<std::string_view> line = lines.next()) {
    if (pv::leading_number(*line) == 1) findings.add(path, lines.number(), "lines after the 25th are not read");
  }
}

}  // namespace pvfilter
