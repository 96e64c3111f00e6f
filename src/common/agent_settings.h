// The settings of the process, each with the moment it is read.
#pragma once

#include <atomic>
#include <cstdint>

#include "common/bounded_text.h"

namespace pv {

using DirectoryText = BoundedText<1024>;

// The four directories that are read at start-up and again for every message. A message works with its own copy, so a
// change in the middle of it mixes nothing.
struct Directories {
  DirectoryText connector_root;  // the queues
  DirectoryText configuration;   // filters, criteria, actions, templates, word files
  DirectoryText bad_mail;
  DirectoryText quarantine;
};

// A number that is read from the settings when it is first asked for. While it holds `marker` (also because that is the
// stored value) every request reads it again. Any thread.
class LazyNumber {
 public:
  constexpr explicit LazyNumber(std::uint32_t marker) : marker_(marker), value_(marker) {}
  std::uint32_t get(const char* key_path, const char* name);
  void forget() { value_ = marker_; }

 private:
  const std::uint32_t marker_;
  std::atomic<std::uint32_t> value_;
};

struct AgentSettings {
  // Set at start-up, then read-only.
  BoundedText<512> activity_log_directory;
  std::uint32_t update_statistics = 0;
  std::uint32_t debug_status = 0;  // script diagnostics: 1 through report_write, 2 to standard output
  std::uint32_t script_literal_mode = 1;
  std::uint32_t uri_sbl_max_checks = 0;
  std::uint32_t allow_pattern_caching = 0;
  BoundedText<2048> local_dns_server_list;
  std::uint32_t debug_logging_level = 5;
  DirectoryText mail_root;  // read it with mail_root()
  DirectoryText application_directory;
  DirectoryText whitelist_configuration_directory;
  DirectoryText local_domain_name;
  std::uint32_t indexing_enabled = 0;
  std::uint32_t bayesian_filtering_status = 0;
  std::uint32_t bayesian_filtering_load_mode = 0;
  std::uint32_t domain_keys_status = 0;
  std::uint32_t antivirus_status = 0;

  // Read at first use.
  LazyNumber spamassassin_enabled{0xFFFFFFFF};
  LazyNumber case_sensitivity{0xFFFFFFFF};
  LazyNumber perform_sblrbl{200000};
};

// The process's settings. Written by start-up alone, before the first message.
AgentSettings& settings();

// Start-up reads its values in three groups, because the log opens and the filters load in between.
void read_logging_directory();  // "Activity Log Directory"
void read_general_settings();   // "Update Statistics" to "Debug Logging Level"
void read_server_settings();    // "Mail Root" to "Local Domain Name"
void read_scanner_settings();   // "Indexing Enabled" to "Domain Keys Status"
void read_antivirus_setting();  // "Antivirus Status"

// Reads the four directories anew and publishes them for the loader of filters. Any thread.
Directories reread_directories();

// The directories as they were last read. Any thread.
Directories current_directories();

// "Mail Root". As long as it is empty, it is read again. Any thread.
DirectoryText mail_root();

// The lazily read ones, by what they decide.
bool case_sensitive_criteria();
bool looks_up_body_links();
bool spamassassin_enabled();

// Every setting back to its state before start-up; for shutdown and tests.
void forget_agent_settings();

}  // namespace pv
