// The commands of pvfilter. Each does its work, prints to standard output and returns the exit status, or throws a
// CommandError.
#pragma once

#include <string>
#include <vector>

#include "pvfilter/envelope_options.h"
#include "pvfilter/exit_status.h"
#include "pvfilter/server_tree.h"

namespace pvfilter {

// pvfilter new DIR: a ready server tree with example filters. DIR must not exist, or be an empty directory. With
// `registry`, which must not exist or be empty either, the settings go there instead of DIR/settings.reg.
ExitStatus new_server(const std::string& directory, const std::string& registry);

// pvfilter run: each file is queued, filtered by the agent and reported.
struct RunOptions {
  SettingsPlace settings;
  std::string agent_library;  // empty: beside this program
  EnvelopeOptions envelope;
  std::vector<std::string> files;
  bool json = false;
  bool show_output = false;  // what the agent printed, too
};
ExitStatus run_messages(const RunOptions& options);

// pvfilter settings get | set | list
enum class SettingType { kUnknown, kText, kNumber };
ExitStatus get_setting(const SettingsPlace& settings, const std::string& name);
ExitStatus set_setting(const SettingsPlace& settings, const std::string& name, const std::string& value,
                       SettingType type);
ExitStatus list_settings(const SettingsPlace& settings);

// pvfilter check: reads what the agent reads and names every mistake on standard error; kDataError when there are any.
ExitStatus check_server(const SettingsPlace& settings);

}  // namespace pvfilter
