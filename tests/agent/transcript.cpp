// agent_transcript LIBRARY MESSAGES OUT [--ordinals]
//
// Loads the agent's library in a process of its own, filters every file below MESSAGES, and leaves in OUT whatever the
// agent made of it: the messages, the copies, the report without its times. Two systems that are given the same
// messages must leave the same bytes; scripts/test-windows compares them.
//
// --ordinals: the exports are found by their numbers instead of their names.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "agent/every_criterion.h"
#include "platform/environment.h"
#include "platform/library.h"
#include "pvmtafilter/agent.h"

namespace {

namespace fs = std::filesystem;
using pv::test::ServerTree;

std::string read(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void write(const fs::path& file, std::string_view bytes) {
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// In the order of their names, byte by byte, which is the same everywhere.
std::vector<fs::path> files_below(const fs::path& directory) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
    if (entry.is_regular_file() && entry.path().extension() != ".md") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end(),
            [](const fs::path& a, const fs::path& b) { return a.generic_string() < b.generic_string(); });
  return files;
}

template <class Function>
Function* find(const pv::platform::Library& library, const char* name, int ordinal, bool by_ordinal) {
  // The system takes a small number in place of a name.
  const char* number = reinterpret_cast<const char*>(static_cast<std::intptr_t>(ordinal));
  return library.find<Function>(by_ordinal ? number : name);
}

// The report's lines without their first column, the time.
std::string without_times(const std::string& report) {
  std::string result;
  for (std::size_t at = 0; at < report.size();) {
    const std::size_t end = std::min(report.find('\n', at), report.size() - 1) + 1;
    const std::size_t tab = std::min(report.find('\t', at), end);
    result += report.substr(tab, end - tab);
    at = end;
  }
  return result;
}

void copy_outcome(const ServerTree& server, const fs::path& out) {
  for (const char* directory : {"queues", "badmail", "quarantine"}) {
    for (const fs::path& file : files_below(server.path(directory))) {
      write(out / file.lexically_relative(server.path()), read(file));
    }
  }
  std::string report;
  for (const std::string& name : server.names("logs")) report += server.read("logs/" + name);
  write(out / "report.txt", without_times(report));
}

void filter_all(const char* library_path, const fs::path& messages, const fs::path& out, bool by_ordinal) {
  const ServerTree server;
  pv::test::enable_every_criterion(server);
  server.actions("HASATTACHMENTSMATCHING", {{"COPY_TO_QUARANTINE", ""}});
  server.actions("HASANATTACHMENT", {{"COPY_TO_BADMAIL", ""}, {"ADD_HEADER", "X-Address|[PV_SENDER] [PV_IP]"}});
  server.actions("PRIORITY", {{"DELETE", ""}, {"STOP_PROCESSING", ""}});
  pv::platform::set_environment_variable("PVMTAFILTER_SETTINGS", server.path("settings.reg"));
  {
    std::string reason;
    const std::optional<pv::platform::Library> library = pv::platform::Library::load(library_path, &reason);
    if (!library) throw std::runtime_error(reason);
    auto* execute = find<decltype(FilterExecute)>(*library, "FilterExecute", 1, by_ordinal);
    auto* initialise = find<decltype(FilterInit)>(*library, "FilterInit", 2, by_ordinal);
    if (execute == nullptr || initialise == nullptr) throw std::runtime_error("an export is missing");
    if (initialise(0) != 1) throw std::runtime_error("FilterInit failed");
    int number = 0;
    for (const fs::path& file : files_below(messages)) {
      char id[16];
      std::snprintf(id, sizeof id, "M%06d.MAI", ++number);
      server.queue(id, pv::test::kCommandFile, read(file));
      if (execute("", id, "SMTP", 0) != 1) throw std::runtime_error(file.string());
    }
  }
  copy_outcome(server, out);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return 64;
  try {
    filter_all(argv[1], argv[2], argv[3], argc > 4 && std::string_view(argv[4]) == "--ordinals");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "agent_transcript: %s\n", error.what());
    return 1;
  }
  return 0;
}
