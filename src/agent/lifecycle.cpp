#include "agent/lifecycle.h"

#include <cstdint>

#include "agent/antivirus_plugins.h"
#include "agent/reload_gate.h"
#include "agent/system_filters.h"
#include "common/agent_settings.h"
#include "common/caught_exception.h"
#include "common/dates.h"
#include "common/registry_access.h"
#include "common/report_log.h"
#include "platform/environment.h"
#include "platform/settings_store.h"
#include "store/store_library.h"

namespace pv {
namespace {

constinit std::uint64_t attached_process = 0;  // the process that loaded the agent

void open_log_and_read_settings() {
  read_logging_directory();
  create_report_mutex();
  open_report_log();
  read_general_settings();
  // The DNS look-up library is initialised here, with the local DNS server list, once the agent can load it.
  reread_directories();
  read_server_settings();
}

// Scan counters start at 0 with every start of the agent, so that they count since "Service Start".
void restart_counters(const char* detections, const char* total_scans) {
  publish_counter(kCountersKey, detections, 0);
  publish_counter(kCountersKey, total_scans, 0);
}

// The order in which the providers are loaded: DKIM, Bayesian, SpamAssassin, antivirus. None can be loaded yet; their
// criteria are left alone (providers/scanners.h).
void start_scanners() {
  read_scanner_settings();
  if (settings().bayesian_filtering_status != 0) restart_counters("Bayesian Detections", "Bayesian Total Scans");
  if (spamassassin_enabled()) restart_counters("SA Detections", "SA Total Scans");
  publish_counter(kCountersKey, "Service Start", unix_time_now());
  read_antivirus_setting();
  if (settings().antivirus_status == 0) return;
  restart_counters("Antivirus Detected", "Antivirus Total Scans");
  LoadStoreLibrary();
}

}  // namespace

void attach() noexcept {
  try {
    attached_process = platform::process_id();
    open_log_and_read_settings();
    load_system_filters_once();
    start_scanners();
  } catch (...) {
    report_caught_exception("attach", "agent/lifecycle.cpp", __LINE__);
  }
}

void detach() noexcept {
  // A child that the MTA forked must leave the log to its parent, and may hold locks of threads that it does not have.
  if (attached_process != platform::process_id()) return;
  try {
    release_system_filters();
    // The scanner providers are released here, once they can be loaded.
    release_antivirus_plugin();
    ReleaseStoreLibrary();
    close_report_log();
    release_report_log();
    // At the end of the process messages may still be in flight; they keep their settings.
    if (messages_in_flight == 0) forget_agent_settings();
    platform::forget_settings();
  } catch (...) {
    report_caught_exception("detach", "agent/lifecycle.cpp", __LINE__);
  }
}

}  // namespace pv
