#include "script/script_host.h"

#include <cstdint>

#include "common/agent_settings.h"
#include "common/formats.h"
#include "common/output.h"
#include "common/report_log.h"

namespace pv {
namespace {

// What the system answers when the script control is asked for and nobody provides it (0x80040154).
constexpr std::int32_t kNoScriptControl = -2147221164;
constexpr char kNoScriptControlText[] = "Class not registered";

void report_script_failure(std::int32_t code, const char* description) {
  BoundedText<1024> line;
  copy_bounded(line, format_text_256("PostVane Filter Script incurred an error: (%ld) %s", static_cast<long>(code),
                                     description));
  append_bounded(line, "\n");
  script_debug_print(line);
}

}  // namespace

void script_debug_print(std::string_view text) {
  if (settings().debug_status == 1) report_write(text);
  if (settings().debug_status == 2) print_text(text);
}

std::int32_t run_script(std::string_view, std::string_view, std::span<char> result_text, bool always_fill_result) {
  if (always_fill_result && !result_text.empty()) result_text.front() = '\0';
  // The engine's place: without one every program ends as on a system that lacks the script control.
  report_script_failure(kNoScriptControl, kNoScriptControlText);
  return 0;
}

}  // namespace pv
