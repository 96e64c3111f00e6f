#include <optional>
#include <string>

#include "common/bounded_text.h"
#include "common/text_search.h"
#include "filters/criteria_keywords.h"
#include "filters/limits.h"
#include "platform/file.h"
#include "pvfilter/check_filters.h"
#include "script/decision_script.h"
#include "vbscript/engine.h"

namespace pvfilter {
namespace {

int line_at(std::string_view text, std::size_t position) {
  int line = 1;
  for (const char c : text.substr(0, position)) line += c == '\n' ? 1 : 0;
  return line;
}

// Whether a keyword has this spelling; `known` is true for one in another case as well.
bool is_keyword(std::string_view name, bool& known) {
  known = false;
  for (const std::string_view keyword : pv::kCriteriaKeywords) {
    if (name == keyword) return true;
    known = known || pv::equals_nocase(name, keyword);
  }
  return false;
}

// Puts a number of the token's length in its place, so that columns stay. The agent replaces up to 16 of a kind.
void replace_tokens(std::string& script, const std::string& path, Findings& findings) {
  for (std::size_t at = script.find("[PV_"); at != std::string::npos; at = script.find("[PV_", at + 1)) {
    const std::size_t end = script.find(']', at);
    if (end == std::string::npos) return;
    const std::string name = script.substr(at + 4, end - at - 4);
    bool known = false;
    if (is_keyword(name, known)) {
      script.replace(at, end + 1 - at, "0" + std::string(end - at, ' '));
      continue;
    }
    findings.add(path, line_at(script, at),
                 "[PV_" + name + "] " +
                     (known ? "is not replaced: keywords are in the case of"
                              " the list of criteria"
                            : "is no criterion and is not replaced"));
  }
}

}  // namespace

void check_script(const pv::Directories&, const std::string& path, const CheckedFilter& filter, Findings& findings) {
  const std::optional<std::string> bytes = pv::platform::read_whole_file(path, pv::kLargestScript);
  if (!bytes) return findings.add(path, 0, "cannot be read; the filter " + filter.shown + " never fires");
  std::string script(pv::until_nul(*bytes));
  if (script.size() < bytes->size()) findings.add(path, line_at(script, script.size()), "a NUL byte ends the script");
  replace_tokens(script, path, findings);
  const std::optional<pv::vbscript::ScriptError> error = pv::vbscript::Engine::check(pv::decision_program(script));
  if (!error) return;
  findings.add(path, static_cast<int>(error->at.line) - pv::kScriptStartsAfter,
               "column " + std::to_string(error->at.column) + ": " + error->description + " (" +
                   std::to_string(error->number) + "); the filter " + filter.shown + " never fires");
}

}  // namespace pvfilter
