// The five exports. Each only turns C texts into views and lets nothing escape into the MTA.
#include <span>
#include <string_view>

#include "agent/antivirus_plugins.h"
#include "agent/filter_execute.h"
#include "common/caught_exception.h"
#include "providers/bayesian_training.h"
#include "pvmtafilter/agent.h"
#include "script/script_host.h"

namespace {

std::string_view text_or_empty(const char* text) {
  return text != nullptr ? text : "";
}

// Runs `body`; an exception is reported under the export's name and gives 0.
template <class Body>
std::int32_t guarded(const char* export_name, Body body) noexcept {
  try {
    return body();
  } catch (...) {
    pv::report_caught_exception(export_name, "agent/exports.cpp", __LINE__);
    return 0;
  }
}

}  // namespace

extern "C" {

int32_t PV_CALL FilterExecute(const char*, const char* message_id, const char* connector, int32_t) {
  pv::filter_queued_message(text_or_empty(message_id), text_or_empty(connector));
  return 1;  // whatever happened, the MTA must go on delivering
}

int32_t PV_CALL FilterInit(int32_t) {
  return guarded("FilterInit", [] { return pv::load_antivirus_plugins() ? 1 : 0; });
}

int32_t PV_CALL FilterUnInit(int32_t) {
  return 1;
}

int32_t PV_CALL ExecuteVBScript(const char* script, const char* function_name, char* result_text,
                                int32_t result_text_size, int32_t always_fill_result) {
  return guarded("ExecuteVBScript", [&] {
    const bool has_room = result_text != nullptr && result_text_size > 0;
    const std::span<char> room(result_text, has_room ? static_cast<std::size_t>(result_text_size) : 0);
    return pv::run_script(text_or_empty(script), text_or_empty(function_name), room, always_fill_result != 0);
  });
}

int32_t PV_CALL FilterCommand(int32_t, int32_t, const char* command) {
  return guarded("FilterCommand", [&] { return pv::train_bayesian(command != nullptr ? command : ""); });
}

}  // extern "C"
