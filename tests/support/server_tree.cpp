#include "support/server_tree.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

#include "platform/settings_file.h"
#include "platform/settings_store.h"

namespace pv::test {
namespace fs = std::filesystem;

TemporaryDirectory::TemporaryDirectory() {
  std::random_device random;
  do {
    path_ = fs::temp_directory_path() / ("pvtest-" + std::to_string(random()));
  } while (!fs::create_directory(path_));
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void TemporaryDirectory::write(std::string_view relative, std::string_view bytes) const {
  const fs::path file = path_ / relative;
  fs::create_directories(file.parent_path());
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

std::string TemporaryDirectory::read(std::string_view relative) const {
  std::ifstream in(path_ / relative, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool TemporaryDirectory::exists(std::string_view relative) const {
  return fs::exists(path_ / relative);
}

bool TemporaryDirectory::remove(std::string_view relative) const {
  std::error_code error;
  fs::remove_all(path_ / relative, error);
  return !error;
}

void TemporaryDirectory::make_directory(std::string_view relative) const {
  fs::create_directories(path_ / relative);
}

std::vector<std::string> TemporaryDirectory::names(std::string_view relative) const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(path_ / relative)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

namespace {

constexpr char kRoot[] = R"(SOFTWARE\Post Vane\Post Vane)";
constexpr char kConnectors[] = R"(SOFTWARE\Post Vane\Post Vane\CONNECTORS)";
constexpr char kAgent[] = R"(SOFTWARE\Post Vane\Post Vane\Agents\MTA\Filters\MTAFILTER)";

}  // namespace

ServerTree::ServerTree() {
  for (const char* directory :
       {"conf/FILTERS/CRITERIA", "conf/FILTERS/ACTIONS", "conf/FILTERS/PATTERNS", "conf/FILTERS/Templates",
        "queues/SMTP/Inbound/Messages", "queues/SMTP/Outgoing/Messages", "badmail/Messages", "quarantine/Messages",
        "logs", "app", "mail"}) {
    make_directory(directory);
  }
  platform::use_settings_file(path("settings.reg"));
  set_text(kConnectors, "Connector Root Directory", path("queues"));
  set_text(kRoot, "Configuration Directory", path("conf"));
  set_text(kRoot, "Bad Mail Directory", path("badmail"));
  set_text(kRoot, "Quarantine Directory", path("quarantine"));
  set_text(kRoot, "Application Directory", path("app"));
  set_text(kRoot, "Mail Root", path("mail"));
  set_text(kAgent, "Activity Log Directory", path("logs"));
}

ServerTree::~ServerTree() {
  platform::use_settings_file({});
}

void ServerTree::refuse_settings_writes() const {
  remove("settings.reg.lock");
  std::error_code no_links;
  fs::create_symlink("nowhere", path("settings.reg.lock"), no_links);
  if (no_links) make_directory("settings.reg.lock");
}

void ServerTree::set_number(std::string_view key, std::string_view name, std::uint32_t number) const {
  write("settings.reg", platform::with_setting(read("settings.reg"), key, name, number));
}

void ServerTree::set_text(std::string_view key, std::string_view name, std::string_view text) const {
  write("settings.reg", platform::with_setting(read("settings.reg"), key, name, std::string(text)));
}

void ServerTree::filters(std::initializer_list<std::string> definition_names) const {
  std::string table;
  for (const std::string& text : definition_names) {
    table += text + "\t1\t" + text + "\t\t" + text + " filter\t\r\n";
  }
  write("conf/FILTERS/FILTER.TAB", table);
}

void ServerTree::criteria(std::string_view definition,
                          std::initializer_list<std::pair<int, std::string_view>> slots) const {
  std::array<std::string, 25> lines;
  lines.fill("0\t\t\t\t\t0\t");
  for (const auto& [slot, values] : slots) {
    lines[static_cast<std::size_t>(slot)] = "1\t\t" + std::string(values) + "\t\t\t1\t";
  }
  std::string table;
  for (const std::string& line : lines) table += line + "\r\n";
  write("conf/FILTERS/CRITERIA/" + std::string(definition) + ".TAB", table);
}

void ServerTree::actions(std::string_view definition,
                         std::initializer_list<std::pair<std::string_view, std::string_view>> rows) const {
  std::string table;
  for (const auto& [keyword, data] : rows) {
    table += "1\t\t" + std::string(data) + "\t" + std::string(keyword) + "\tdescription\t\r\n";
  }
  write("conf/FILTERS/ACTIONS/" + std::string(definition) + ".TAB", table);
}

void ServerTree::queue(std::string_view message_id, std::string_view command_file, std::string_view message) const {
  const std::string id(message_id);
  write("queues/SMTP/Inbound/Messages/" + id, message);
  write("queues/SMTP/Inbound/" + id, command_file);
}

std::string ServerTree::message(std::string_view message_id) const {
  return read("queues/SMTP/Inbound/Messages/" + std::string(message_id));
}

}  // namespace pv::test
