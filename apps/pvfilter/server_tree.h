// A server tree on disk: DIR/settings.reg and the directories that it names.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "common/agent_settings.h"

namespace pvfilter {

inline constexpr char kSettingsFile[] = "settings.reg";

struct Server {
  std::filesystem::path directory;  // absolute
  pv::Directories directories;
  std::filesystem::path log_directory;  // empty: none set
  std::uint32_t log_mode = 0;           // "Activity Log Enabled"
};

// Opens a server tree and makes its settings those of this process and of the agent it loads. Throws CommandError when
// there is no settings file or it names no queues.
Server open_server(const std::string& directory);

// Where the settings file of a server tree must be. Throws CommandError when there is none.
std::filesystem::path settings_path(const std::string& server);

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
