#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <variant>

#include "common/text_search.h"
#include "platform/file.h"
#include "platform/settings_file.h"
#include "platform/settings_store.h"
#include "platform/system_error.h"
#include "pvfilter/commands.h"
#include "pvfilter/example_server.h"

namespace pvfilter {
namespace fs = std::filesystem;
namespace {

constexpr const char* kDirectories[] = {
    "app",
    "badmail/Messages",
    "conf/FILTERS/Templates",
    "conf/FILTERS/PATTERNS",
    "logs",
    "queues/LS/Inbound/Messages",
    "queues/LS/Outgoing/Messages",
    "queues/SMTP/Inbound/Messages",
    "queues/SMTP/Outgoing/Messages",
    "quarantine/Messages",
    "mail",
};

void make_directory(const fs::path& directory) {
  std::error_code error;
  fs::create_directories(directory, error);
  if (error) throw CommandError(kCannotCreate, directory.string() + ": " + error.message());
}

void write_file(const fs::path& path, std::string_view text) {
  make_directory(path.parent_path());
  pv::platform::OutputFile file;
  if (file.open(path.string(), pv::platform::FileMode::kText, pv::platform::Disposition::kCreateNew) &&
      file.write(text) && file.close()) {
    return;
  }
  throw CommandError(kCannotCreate,
                     path.string() + ": " + pv::platform::system_error_text(pv::platform::last_system_error()));
}

// In the settings file a backslash of a path is doubled and a quote escaped.
std::string as_setting(std::string text) {
  pv::replace_in_string(text, "\\", "\\\\", 0, false, true);
  pv::replace_in_string(text, "\"", "\\\"", 0, false, true);
  return text;
}

void refuse_registry_in_use(const std::string& registry) {
  use_settings({.server = "", .file = "", .registry = registry});
  const auto content = pv::platform::all_settings();
  const bool empty = !content || std::all_of(content->keys.begin(), content->keys.end(),
                                             [](const auto& key) { return key.second.names.empty(); });
  if (!empty) throw CommandError(kCannotCreate, registry + ": is there already and is not empty");
}

void write_to_registry(const std::string& registry, std::string_view settings) {
  const auto write = [](const std::string& key, const std::string& name, const pv::platform::SettingValue& value) {
    const auto* number = std::get_if<std::uint32_t>(&value);
    return number != nullptr ? pv::platform::write_number_setting(key, name, *number)
                             : pv::platform::write_text_setting(key, name, std::get<std::string>(value));
  };
  for (const auto& [path, key] : pv::platform::parse_settings(settings).keys) {
    for (const auto& [name, value] : key.values) {
      if (!write(path, name, value)) throw CommandError(kCannotCreate, registry + ": cannot be written");
    }
  }
}

std::string quoted(const std::string& word) {
  return word.find(' ') == std::string::npos ? word : '"' + word + '"';
}

}  // namespace

ExitStatus new_server(const std::string& directory, const std::string& registry) {
  const fs::path root = fs::absolute(directory).lexically_normal();
  std::error_code error;
  if (fs::exists(root, error) && !fs::is_empty(root, error)) {
    throw CommandError(kCannotCreate, root.string() + ": is there already and is not an empty directory");
  }
  if (!registry.empty()) refuse_registry_in_use(registry);
  for (const char* name : kDirectories) make_directory(root / name);
  const std::string shown_root = as_setting(root.string());
  for (const ExampleFile& file : example_files()) {
    std::string text(file.text);
    pv::replace_in_string(text, "@SERVER@", shown_root, 0, false, true);
    if (file.path == kSettingsFile && !registry.empty()) {
      write_to_registry(registry, text);
    } else {
      write_file(root / file.path, text);
    }
  }
  std::printf("A server tree is ready in %s\n", root.string().c_str());
  const std::string place = registry.empty() ? "--server " + quoted(directory) : "--registry " + quoted(registry);
  std::printf("Try it: pvfilter run %s FILE...\n", place.c_str());
  return kOk;
}

}  // namespace pvfilter
