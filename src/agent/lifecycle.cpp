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
#include "platform/file.h"
#include "platform/settings_store.h"
#include "providers/bayesian_training.h"
#include "providers/dns_library.h"
#include "providers/load_scanners.h"
#include "store/store_library.h"

namespace pv {
namespace {

constinit std::uint64_t attached_process = 0;  // the process that loaded the agent

void open_log_and_read_settings() {
  read_logging_directory();
  create_report_mutex();
  open_report_log();
  read_general_settings();
  load_dns_library(settings().local_dns_server_list.c_str());
  reread_directories();
  read_server_settings();
}

// The counters that the scanners publish are 0 now, so that the stored ones count since "Service Start".
void start_scanners() {
  read_scanner_settings();
  load_dkim_scanner();
  load_bayesian_scanner();
  load_spam_assassin_scanner();
  publish_counter(kCountersKey, "Service Start", unix_time_now());
  read_antivirus_setting();
  load_antivirus_scanner();
  if (settings().antivirus_status != 0) LoadStoreLibrary();
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
    // At the end of the process messages may still be in flight; they keep their scanners, look-ups and settings.
    const bool idle = messages_in_flight == 0 && trainings_in_progress == 0;
    finish_publishing_counters();
    if (idle) release_scanners();
    release_antivirus_plugin();
    ReleaseStoreLibrary();
    close_report_log();
    release_report_log();
    if (idle) {
      forget_agent_settings();
      forget_dns_library();
    }
    platform::forget_settings();
    platform::release_read_buffers();
  } catch (...) {
    report_caught_exception("detach", "agent/lifecycle.cpp", __LINE__);
  }
}

}  // namespace pv
