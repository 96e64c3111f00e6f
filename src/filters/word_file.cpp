#include "filters/word_file.h"

#include <optional>
#include <string>

#include "common/agent_settings.h"
#include "common/output.h"
#include "common/text_search.h"
#include "filters/match_pattern.h"
#include "filters/scope_paths.h"
#include "platform/file.h"
#include "platform/paths.h"

namespace pv {
namespace {

constexpr std::string_view kReference = "<REFERENCE>";

bool matches(const WordFileTest& test, std::string_view line, bool case_sensitive) {
  return MatchPattern(test.text, line, test.delimiters, case_sensitive);
}

}  // namespace

void record_line(const WordFileTest& test, std::string_view line, WordFileSource source, FilterMatch& match) {
  ++match.match_count[static_cast<std::size_t>(test.slot)];
  match.set_matched_text(test.slot, test.tag, line);
  match.set_match_value(test.slot, test.entry, "1");
  const std::string_view shown = until_nul(line);
  if (source == WordFileSource::kCache) {
    print_parts({"Message Criteria (Tag=", test.tag, ") met against [", shown, "] in specified word file.\n"});
  } else {
    print_parts({"Message General Criteria met against [", shown, "] in specified word file.\n"});
  }
}

std::string_view pattern_of_line(std::string_view line) {
  const std::string_view text = until_nul(line);
  return text.substr(0, text.find('\n'));
}

bool ResolveWordFile(const FilterSet& set, std::string_view configuration_directory, std::string_view value,
                     WordFilePath& path) {
  if (value.empty()) return path.assign(general_word_file_path(configuration_directory));
  if (!value.starts_with(kReference)) return false;
  const std::optional<Extract> file = extract_between(value, "<FILE>", "</FILE>");
  if (!file || file->text.size() > kWordFileName) return false;
  const std::optional<Extract> directory = extract_between(value, "<PATH>", "</PATH>");
  if (!directory) {
    return path.assign(platform::join_path({word_file_directory(set, configuration_directory), file->text}));
  }
  return path.assign(platform::join_path({directory->text, file->text}));
}

bool MatchWordFileCached(const WordFileTest& test, const PatternCache& cache, std::string_view path,
                         FilterMatch& match) {
  const PatternFile* file = cache.find(path);
  if (file == nullptr) return false;
  const bool case_sensitive = case_sensitive_criteria();
  for (const std::string& line : file->lines) {
    if (matches(test, line, case_sensitive)) record_line(test, line, WordFileSource::kCache, match);
  }
  return true;
}

bool MatchWordFile(const WordFileTest& test, std::string_view path, FilterMatch& match) {
  platform::InputFile file;
  if (!file.open(path, platform::FileMode::kText)) return false;
  const bool case_sensitive = case_sensitive_criteria();
  while (const std::optional<std::string_view> bytes = file.read_line(kTableLine)) {
    const std::string_view line = pattern_of_line(*bytes);
    if (matches(test, line, case_sensitive)) record_line(test, line, WordFileSource::kFile, match);
  }
  return true;
}

}  // namespace pv
