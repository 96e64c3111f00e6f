// A scanner library for the tests: answers what it was told to, and notes its calls. Compiled with other sets of entry
// points.
#include <atomic>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "providers/scanner_script.h"
#include "pvmtafilter/plugin.h"

namespace {

ScannerScript script;  // set between calls
std::string calls;
std::atomic<int> call_count{0};

[[maybe_unused]] void note(const char* entry, const char* request, int32_t request_length,
                           const int32_t* reply_length) {
  ++call_count;
  if (!script.noted) return;
  calls += entry;
  calls.append(" ").append(request).append(" ").append(std::to_string(request_length));
  if (reply_length != nullptr) calls.append(" ").append(std::to_string(*reply_length));
  calls += "\n";
}

[[maybe_unused]] int32_t answer(char* reply, int size) {
  if (script.behaviour == ScannerScript::kThrows) throw std::runtime_error("out of order");
  if (script.behaviour == ScannerScript::kFillsAll) {
    std::memset(reply, 'x', static_cast<std::size_t>(size));
    std::memcpy(reply, script.reply, std::strlen(script.reply));
  } else {
    std::snprintf(reply, static_cast<std::size_t>(size), "%s", script.reply);
  }
  return script.result;
}

// The end of a library cannot be asked about afterwards.
[[maybe_unused]] void note_in_file(const char* line) {
  if (script.file == nullptr) return;
  if (std::FILE* file = std::fopen(script.file, "ab")) {
    std::fputs(line, file);
    std::fclose(file);
  }
}

}  // namespace

extern "C" {

PV_EXPORT void set_script(const ScannerScript* next) {
  script = *next;
}
PV_EXPORT const char* noted_calls() {
  return calls.c_str();
}
PV_EXPORT int number_of_calls() {
  return call_count;
}

#ifdef SCANNER_INITIALIZE
PV_EXPORT int32_t PV_CALL SCANNER_INITIALIZE(const char* request, int32_t length, char* reply, int32_t* reply_length) {
  note("initialize", request, length, reply_length);
  return answer(reply, PV_REPLY_SIZE);
}
#endif

#ifdef SCANNER_EXECUTE
PV_EXPORT int32_t PV_CALL SCANNER_EXECUTE(const char* request, int32_t length, char* reply, int32_t* reply_length) {
  note("execute", request, length, reply_length);
  return answer(reply, PV_REPLY_SIZE);
}
#endif

#ifdef SCANNER_CLEAN_UP
PV_EXPORT int32_t PV_CALL SCANNER_CLEAN_UP(const char*, int32_t, char* reply, int32_t*) {
  note_in_file(script.clean_up_line);
  return answer(reply, PV_REPLY_SIZE);
}
#endif

#ifdef SCANNER_PROVIDER_EXECUTE
PV_EXPORT int32_t PV_CALL ProviderExecute(const char* agent_name, const char* message_id, const char* connector,
                                          char* result_text) {
  const std::string request = std::string(agent_name) + " " + message_id + " " + connector;
  note("scan", request.c_str(), static_cast<int32_t>(request.size()), nullptr);
  return answer(result_text, PV_RESULT_TEXT_SIZE);
}
#endif

}  // extern "C"
