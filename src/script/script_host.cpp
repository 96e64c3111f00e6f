#include "script/script_host.h"

#include <memory>
#include <string>

#include "common/formats.h"
#include "common/text_search.h"
#include "platform/script_control.h"
#include "script/script_control_source.h"
#include "script/script_debug.h"

namespace pv {
namespace {

using platform::ScriptControl;
using platform::ScriptValue;

constexpr char kResultFunction[] = "PV_GetResultData";

// One request to the host.
struct ScriptRequest {
  std::string_view program;
  std::string_view function;
  std::span<char> result_text;
  bool always_fill_result;
};

bool failed(std::int32_t outcome) {
  return outcome < 0;
}

// Keeps what fits: half a result text still tells more than none.
void fill(std::span<char> room, std::string_view text) {
  if (room.empty()) return;
  room[text.copy(room.data(), room.size() - 1)] = '\0';
}

void report_failure(std::int32_t code, const std::string& text) {
  const BoundedText<256> line =
      format_text_256("PostVane Filter Script incurred an error: (%ld) %s", static_cast<long>(code), text.c_str());
  script_debug_print(format_text("%s\n", line.c_str()));
}

void report_syntax_error(const ScriptRequest& request, std::int32_t code) {
  script_debug_print("Syntax Error Occurred in Filtering Script\n");
  if (contains_nocase(request.program, request.function)) {
    script_debug_print("Script in error follows:\n");
    script_debug_print(request.program);
  }
  if (!request.always_fill_result) return;
  fill(request.result_text, format_text("Script Syntax Error: HRESULT = %ld.", static_cast<long>(code)));
}

// 0 or above, or the code of the failure, which is reported.
std::int32_t load_program(ScriptControl& control, const ScriptRequest& request) {
  // Without the language the program does not compile, which is reported then.
  [[maybe_unused]] const std::int32_t ignored = control.set_language("VBScript");
  const std::int32_t outcome = control.add_code(request.program);
  if (failed(outcome)) {
    report_syntax_error(request, outcome);
    report_failure(outcome, control.failure_text(outcome));
  }
  return outcome;
}

bool wants_result_text(const ScriptRequest& request, std::int32_t verdict) {
  if (request.always_fill_result) return true;
  return verdict != 0 && !request.result_text.empty() && contains_nocase(request.program, kResultFunction);
}

void fetch_result_text(ScriptControl& control, std::span<char> result_text) {
  ScriptValue value;
  if (failed(control.run(kResultFunction, value))) return;
  if (value.text) fill(result_text, *value.text);
}

std::int32_t run_function(ScriptControl& control, const ScriptRequest& request) {
  ScriptValue value;
  const std::int32_t outcome = control.run(request.function, value);
  const std::int32_t verdict = value.number;
  if (failed(outcome)) {
    script_debug_print(format_text("Script failed. 'PV_Execute()' function returned value = %ld.\n",  // any function's
                                   static_cast<long>(verdict)));
    report_failure(outcome, control.failure_text(outcome));
    return 0;
  }
  script_debug_print("Script executed successfully.\n");
  if (wants_result_text(request, verdict)) fetch_result_text(control, request.result_text);
  script_debug_print(format_text("Function Returned Value = %ld.\n", static_cast<long>(verdict)));
  return verdict;
}

std::int32_t run_request(const ScriptRequest& request) {
  if (request.always_fill_result) fill(request.result_text, {});
  std::int32_t failure = 0;
  const std::unique_ptr<ScriptControl> control = new_script_control(failure);
  if (control == nullptr) {
    report_failure(failure, platform::script_failure_text(failure));
    return 0;
  }
  script_debug_print("Script before execution:\n");
  script_debug_print(request.program);
  if (failed(load_program(*control, request))) return 0;
  if (!contains_nocase(request.program, request.function)) {
    script_debug_print("Error executing script. Script does not define a function with the nominated name.\n");
    return 0;
  }
  return run_function(*control, request);
}

}  // namespace

std::int32_t run_script(std::string_view script_text, std::string_view function_name, std::span<char> result_text,
                        bool always_fill_result) {
  return run_request({script_text, function_name, result_text, always_fill_result});
}

}  // namespace pv
