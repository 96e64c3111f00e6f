#include <cstdio>
#include <optional>
#include <vector>

#include "platform/file.h"
#include "platform/settings_file.h"
#include "platform/settings_store.h"
#include "pvfilter/check_filters.h"
#include "pvfilter/check_findings.h"
#include "pvfilter/commands.h"
#include "pvfilter/known_settings.h"
#include "pvfilter/server_tree.h"

namespace pvfilter {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestSettingsFile = std::size_t{16} << 20;  // bytes; the agent reads no larger one either

// A number where a text is wanted, or the other way round, is as if it were missing.
void check_type(const std::string& file, const pv::platform::SettingKey& key, const std::string& name,
                Findings& findings) {
  const KnownSetting* known = find_known_setting(name);
  if (known == nullptr || !pv::platform::NocaseEqual()(known->key, key.path)) return;
  const bool is_number = std::holds_alternative<std::uint32_t>(key.values.at(name));
  if (is_number == known->is_number) return;
  findings.add(file, 0,
               "\"" + name + "\" is " + (is_number ? "a number" : "a text") + ", and the agent reads " +
                   (known->is_number ? "a number" : "a text") + "; it takes " + known->otherwise);
}

pv::platform::SettingsContent read_file(const std::string& file, Findings& findings) {
  findings.first_visit(file);
  std::vector<pv::platform::SettingsMistake> mistakes;
  const std::optional<std::string> bytes = pv::platform::read_whole_file(file, kLargestSettingsFile);
  if (!bytes) findings.add(file, 0, "cannot be read; every setting has its default");
  pv::platform::SettingsContent content = pv::platform::parse_settings(bytes.value_or(""), &mistakes);
  for (const pv::platform::SettingsMistake& mistake : mistakes) findings.add(file, mistake.line, mistake.what);
  return content;
}

void check_types(const std::string& place, const pv::platform::SettingsContent& content, Findings& findings) {
  for (const std::string& path : content.key_order) {
    const pv::platform::SettingKey* key = content.find_key(path);
    if (key == nullptr) continue;
    for (const std::string& name : key->names) check_type(place, *key, name, findings);
  }
}

// `subdirectory` may be empty. A directory that is not set is none that the agent misses.
void check_directory(const std::string& settings_file, const char* setting, std::string_view directory,
                     const char* subdirectory, Findings& findings) {
  if (directory.empty()) return;
  const fs::path path = fs::path(directory) / subdirectory;
  std::error_code error;
  if (fs::is_directory(path, error)) return;
  findings.add(settings_file, 0, "\"" + std::string(setting) + "\": there is no directory " + path.string());
}

void check_directories(const std::string& settings_file, const Server& server, Findings& findings) {
  const pv::Directories& directories = server.directories;
  check_directory(settings_file, "Connector Root Directory", directories.connector_root, "", findings);
  check_directory(settings_file, "Configuration Directory", directories.configuration, "", findings);
  check_directory(settings_file, "Bad Mail Directory", directories.bad_mail, "Messages", findings);
  check_directory(settings_file, "Quarantine Directory", directories.quarantine, "Messages", findings);
  check_directory(settings_file, "Activity Log Directory", server.log_directory.string(), "", findings);
}

}  // namespace

ExitStatus check_server(const SettingsPlace& settings) {
  const std::string place = use_settings(settings);
  Findings findings;
  if (settings.registry.empty()) {
    check_types(place, read_file(place, findings), findings);
  } else {
    check_types(place, pv::platform::all_settings().value_or(pv::platform::SettingsContent()), findings);
  }
  const Server server = open_server(settings);
  check_directories(place, server, findings);
  const int filters = check_filters(server.directories, findings);
  std::printf("%d file%s and %d filter%s checked: %d mistake%s\n", findings.files(), findings.files() == 1 ? "" : "s",
              filters, filters == 1 ? "" : "s", findings.mistakes(), findings.mistakes() == 1 ? "" : "s");
  return findings.mistakes() == 0 ? kOk : kDataError;
}

}  // namespace pvfilter
