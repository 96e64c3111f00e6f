// A server: its settings and the directories that they name.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "common/agent_settings.h"

namespace pvfilter {

inline constexpr char kSettingsFile[] = "settings.reg";

// Where a server's settings are: in its tree's settings.reg, in another file, or in a registry key. One of them is
// given.
struct SettingsPlace {
  std::string server;  // a directory
  std::string file;
  std::string registry;  // as "HKEY_LOCAL_MACHINE\SOFTWARE\Trial"
};

// Makes the settings there those of this process and of an agent that it loads; what messages about them name is
// returned. Throws CommandError when there is no such file, or the system has no registry.
std::string use_settings(const SettingsPlace& place);

struct Server {
  std::filesystem::path directory;  // absolute: where the settings file lies; empty for those of the registry
  pv::Directories directories;
  std::filesystem::path log_directory;  // empty: none set
  std::uint32_t log_mode = 0;           // "Activity Log Enabled"
};

// As use_settings(). Throws CommandError too when the settings name no queues.
Server open_server(const SettingsPlace& place);

// The files in the queues, the bad mail and the quarantine directory, with size and time of change: what a message can
// leave traces in.
struct FileMark {
  std::uintmax_t size = 0;
  std::filesystem::file_time_type changed;
  bool operator==(const FileMark&) const = default;
};
using FileMarks = std::map<std::filesystem::path, FileMark>;
FileMarks mark_files(const Server& server);

// A path as messages show it: relative to the server's directory where it lies in it.
std::string shown_path(const Server& server, const std::filesystem::path& path);

}  // namespace pvfilter
