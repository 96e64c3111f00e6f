#include <cstdio>
#include <filesystem>

#include "common/text_search.h"
#include "platform/file.h"
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

}  // namespace

ExitStatus new_server(const std::string& directory) {
  const fs::path root = fs::absolute(directory).lexically_normal();
  std::error_code error;
  if (fs::exists(root, error) && !fs::is_empty(root, error)) {
    throw CommandError(kCannotCreate, root.string() + ": is there already and is not an empty directory");
  }
  for (const char* name : kDirectories) make_directory(root / name);
  const std::string shown_root = as_setting(root.string());
  for (const ExampleFile& file : example_files()) {
    std::string text(file.text);
    pv::replace_in_string(text, "@SERVER@", shown_root, 0, false, true);
    write_file(root / file.path, text);
  }
  std::printf("A server tree is ready in %s\n", root.string().c_str());
  std::printf("Try it: pvfilter run --server %s FILE...\n", directory.c_str());
  return kOk;
}

}  // namespace pvfilter
