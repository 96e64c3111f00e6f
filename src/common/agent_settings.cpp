#include "common/agent_settings.h"

#include <memory>
#include <mutex>
#include <type_traits>

#include "common/never_destroyed.h"
#include "common/registry_access.h"
#include "platform/settings_store.h"

namespace pv {
namespace {

// Nothing to destroy at process exit, when other threads may still filter.
static_assert(std::is_trivially_destructible_v<AgentSettings> && std::is_trivially_destructible_v<Directories>);

std::mutex& directories_mutex() {
  static NeverDestroyed<std::mutex> mutex;
  return *mutex;
}

// Guarded by directories_mutex.
Directories& shared_directories() {
  static Directories directories;
  return directories;
}

void read_directories(Directories& directories) {
  reg_read_string(kConnectorsKey, "Connector Root Directory", directories.connector_root);
  reg_read_string(kRootKey, "Configuration Directory", directories.configuration);
  reg_read_string(kRootKey, "Bad Mail Directory", directories.bad_mail);
  reg_read_string(kRootKey, "Quarantine Directory", directories.quarantine);
}

bool same_directories(const Directories& a, const Directories& b) {
  return a.connector_root.view() == b.connector_root.view() && a.configuration.view() == b.configuration.view() &&
         a.bad_mail.view() == b.bad_mail.view() && a.quarantine.view() == b.quarantine.view();
}

}  // namespace

std::uint32_t LazyNumber::get(const char* key_path, const char* name) {
  std::uint32_t value = value_;
  if (value == marker_) {
    value = reg_read_dword_or(key_path, name, 0);
    value_ = value;
  }
  return value;
}

AgentSettings& settings() {
  static AgentSettings settings;
  return settings;
}

void read_logging_directory() {
  reg_read_string(kAgentKey, "Activity Log Directory", settings().activity_log_directory);
}

void read_general_settings() {
  AgentSettings& all = settings();
  all.update_statistics = reg_read_dword_or(kRootKey, "Update Statistics", 0);
  all.debug_status = reg_read_dword_or(kAgentKey, "Debug Status", 0);
  all.script_literal_mode = reg_read_dword_or(kAgentKey, "Script Literal Mode", 1);
  all.uri_sbl_max_checks = reg_read_dword_or(kAgentKey, "URI SBL Max Checks", 0);
  all.allow_pattern_caching = reg_read_dword_or(kAgentKey, "Allow Pattern Caching", 0);
  reg_read_string(kSmtpKey, "Local DNS Server List", all.local_dns_server_list);
  all.debug_logging_level = reg_read_dword_or(kAgentKey, "Debug Logging Level", 5);
}

void read_server_settings() {
  AgentSettings& all = settings();
  reg_read_string(kRootKey, "Mail Root", all.mail_root);
  reg_read_app_directory(all.application_directory, 0);
  reg_read_string(kRootKey, "Configuration Directory", all.whitelist_configuration_directory);
  reg_read_string(kSmtpKey, "Local Domain Name", all.local_domain_name);
}

void read_scanner_settings() {
  AgentSettings& all = settings();
  all.indexing_enabled = reg_read_dword_or(kSfKey, "Indexing Enabled", 0);
  all.bayesian_filtering_status = reg_read_dword_or(kAgentKey, "Bayesian Filtering Status", 0);
  spamassassin_enabled();
  all.bayesian_filtering_load_mode = reg_read_dword_or(kAgentKey, "Bayesian Filtering Load Mode", 0);
  all.domain_keys_status = reg_read_dword_or(kSmtpKey, "Domain Keys Status", 0);
}

void read_antivirus_setting() {
  settings().antivirus_status = reg_read_dword_or(kAgentKey, "Antivirus Status", 0);
}

Directories reread_directories() {
  const Directories known = current_directories();
  Directories fresh = known;
  platform::SameSettings one_state;
  read_directories(fresh);
  if (same_directories(fresh, known)) return fresh;
  // Read under the mutex too: else a slow reader could publish what it read before an edit over what came after.
  const std::lock_guard lock(directories_mutex());
  one_state.renew();
  read_directories(shared_directories());
  return shared_directories();
}

Directories current_directories() {
  const std::lock_guard lock(directories_mutex());
  return shared_directories();
}

DirectoryText mail_root() {
  const std::lock_guard lock(directories_mutex());
  DirectoryText& root = settings().mail_root;
  if (root.empty()) reg_read_string(kRootKey, "Mail Root", root);
  return root;
}

bool case_sensitive_criteria() {
  return settings().case_sensitivity.get(kAgentKey, "Case Sensitivity") == 1;
}

bool looks_up_body_links() {
  return settings().perform_sblrbl.get(kAgentKey, "Perform SBLRBL") != 0;
}

bool spamassassin_enabled() {
  return settings().spamassassin_enabled.get(kAgentKey, "SpamAssassin Enabled") == 1;
}

void forget_agent_settings() {
  std::construct_at(&settings());
  const std::unique_lock lock(directories_mutex(), std::try_to_lock);
  if (lock.owns_lock()) std::construct_at(&shared_directories());
}

}  // namespace pv
