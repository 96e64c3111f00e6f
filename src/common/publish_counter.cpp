#include <atomic>
#include <string>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "common/report_log.h"

namespace pv {
namespace {

// A service without the right to write would fail at every message.
constinit std::atomic<bool> failure_reported = false;

void report_failure(std::string_view key_path, std::string_view name) {
  std::string text =
      "PV-IXXXX: Unable to save queue statistics for service. The service account may not have permission to write to "
      "the registry path ";
  text.append(key_path).append(", item ").append(name).append("\n");
  report_write(text);
}

}  // namespace

void publish_counter(std::string_view key_path, std::string_view name, std::uint32_t number) {
  if (settings().update_statistics == 0) return;
  if (reg_write_dword(key_path, name, number)) return;
  if (!failure_reported.exchange(true)) report_failure(key_path, name);
}

void forget_counter_failure_for_test() {
  failure_reported = false;
}

}  // namespace pv
