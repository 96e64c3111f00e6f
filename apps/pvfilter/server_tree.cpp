#include "pvfilter/server_tree.h"

#include "common/registry_access.h"
#include "platform/environment.h"
#include "platform/settings_store.h"
#include "pvfilter/exit_status.h"

namespace pvfilter {
namespace fs = std::filesystem;
namespace {

void mark_directory(const fs::path& directory, FileMarks& marks) {
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, error)) {
    std::error_code unreadable;
    if (!entry.is_regular_file(unreadable)) continue;
    const FileMark mark{entry.file_size(unreadable), entry.last_write_time(unreadable)};
    if (!unreadable) marks.emplace(entry.path(), mark);
  }
}

fs::path settings_file(const SettingsPlace& place) {
  fs::path file = fs::absolute(place.server.empty() ? fs::path(place.file) : fs::path(place.server) / kSettingsFile);
  std::error_code error;
  if (fs::is_regular_file(file, error)) return file.lexically_normal();
  const std::string help = place.server.empty() ? "" : "; `pvfilter new " + place.server + "` makes a server tree";
  throw CommandError(kNoInput, file.string() + ": no such file" + help);
}

}  // namespace

std::string use_settings(const SettingsPlace& place) {
  if (!place.registry.empty() && !pv::platform::is_registry_key(place.registry)) {
    throw CommandError(kUsage, "--registry " + place.registry +
                                   ": only on Windows can settings be in a registry key, below HKEY_LOCAL_MACHINE or "
                                   "HKEY_CURRENT_USER");
  }
  std::string settings = place.registry.empty() ? settings_file(place).string() : place.registry;
  pv::platform::use_settings_file(settings);
  pv::platform::set_environment_variable("PVMTAFILTER_SETTINGS", settings);
  return settings;
}

Server open_server(const SettingsPlace& place) {
  const std::string settings = use_settings(place);
  Server server;
  if (place.registry.empty()) server.directory = fs::path(settings).parent_path();
  server.directories = pv::reread_directories();
  if (server.directories.connector_root.empty()) {
    throw CommandError(kConfig, settings + ": \"Connector Root Directory\" is not set, so there is no queue");
  }
  pv::BoundedText<512> log_directory;
  pv::reg_read_string(pv::kAgentKey, "Activity Log Directory", log_directory);
  server.log_directory = log_directory.view();
  server.log_mode = pv::reg_read_dword_or(pv::kAgentKey, "Activity Log Enabled", 0);
  return server;
}

FileMarks mark_files(const Server& server) {
  FileMarks marks;
  for (const std::string_view base : {server.directories.bad_mail.view(), server.directories.quarantine.view()}) {
    if (base.empty()) continue;
    mark_directory(base, marks);
    mark_directory(fs::path(base) / "Messages", marks);
  }
  std::error_code error;
  for (const fs::directory_entry& connector :
       fs::directory_iterator(fs::path(server.directories.connector_root.view()), error)) {
    for (const char* queue : {"Inbound", "Outgoing"}) {
      mark_directory(connector.path() / queue, marks);
      mark_directory(connector.path() / queue / "Messages", marks);
    }
  }
  return marks;
}

std::string shown_path(const Server& server, const fs::path& path) {
  const fs::path relative = path.lexically_relative(server.directory);
  const bool inside = !relative.empty() && *relative.begin() != "..";
  return (inside ? relative : path).generic_string();
}

}  // namespace pvfilter
