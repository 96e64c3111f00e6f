// The agent over a whole queue, loaded as a mail server loads it, for measuring it as a process (README.md).
//
//     queue_run PVMTAFILTER.so CONFIG QUEUE [TIMES [THREADS]]
//
// CONFIG is a configuration directory, QUEUE a connector root directory; every message of its queue SMTP goes through
// FilterExecute. Standard output is the agent's. With TIMES the queue is filtered so often once more, and what that
// cost goes to standard error. The environment variable CACHING stands for "Allow Pattern Caching".
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/library.h"
#include "platform/settings_file.h"
#include "platform/settings_store.h"
#include "pvmtafilter/agent.h"
#include "support/server_tree.h"

namespace {

namespace fs = std::filesystem;
using FilterExecuteEntry = decltype(&FilterExecute);

// Of this process, all threads together.
double cpu_seconds() {
  return static_cast<double>(std::clock()) / static_cast<double>(CLOCKS_PER_SEC);
}
double real_seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

struct Messages {
  std::vector<std::string> ids;
  std::vector<std::string> paths;
  double bytes = 0;
};

Messages read_queue(const fs::path& queue) {
  Messages messages;
  for (const fs::directory_entry& entry : fs::directory_iterator(queue / "SMTP" / "Inbound" / "Messages")) {
    messages.ids.push_back(entry.path().filename().string());
    messages.paths.push_back(entry.path().string());
    messages.bytes += static_cast<double>(entry.file_size());
  }
  return messages;
}

// What reading costs: every file, line by line.
void read_lines(const Messages& messages) {
  static char line[2048];
  for (const std::string& path : messages.paths) {
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) continue;
    while (std::fgets(line, sizeof line, file) != nullptr) {
    }
    std::fclose(file);
  }
}

template <typename Work>
double cpu_seconds_of(Work work) {
  const double start = cpu_seconds();
  work();
  return cpu_seconds() - start;
}

void filter(FilterExecuteEntry filter_execute, const Messages& messages, int times, int threads) {
  std::atomic<std::size_t> next{0};
  const std::size_t end = messages.ids.size() * static_cast<std::size_t>(times);
  const auto work = [&] {
    for (std::size_t i = next++; i < end; i = next++) {
      filter_execute("", messages.ids[i % messages.ids.size()].c_str(), "SMTP", 0);
    }
  };
  std::vector<std::thread> others;
  for (int i = 1; i < threads; ++i) others.emplace_back(work);
  work();
  for (std::thread& other : others) other.join();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) return 2;
  const int times = argc > 4 ? std::atoi(argv[4]) : 0;
  const int threads = argc > 5 ? std::atoi(argv[5]) : 1;
  const pv::test::ServerTree server;
  server.set_text("SOFTWARE\\Post Vane\\Post Vane", "Configuration Directory", argv[2]);
  server.set_text("SOFTWARE\\Post Vane\\Post Vane\\CONNECTORS", "Connector Root Directory", argv[3]);
  const char* const caching = std::getenv("CACHING");
  server.set_number("SOFTWARE\\Post Vane\\Post Vane\\Agents\\MTA\\Filters\\MTAFILTER", "Allow Pattern Caching",
                    caching != nullptr ? 1 : 0);
  setenv("PVMTAFILTER_SETTINGS", server.path("settings.reg").c_str(), 1);

  // A server's settings have not been written a moment ago. These have, and would be read again for each message until
  // their time of change tells later edits apart.
  std::this_thread::sleep_for(std::chrono::milliseconds(150));

  double start = cpu_seconds();
  const std::optional<pv::platform::Library> agent = pv::platform::Library::load(argv[1]);
  const FilterExecuteEntry filter_execute = agent ? agent->find<decltype(FilterExecute)>("FilterExecute") : nullptr;
  if (filter_execute == nullptr) return 1;
  const double loading = cpu_seconds() - start;

  const Messages messages = read_queue(argv[3]);
  filter(filter_execute, messages, 1, threads);  // reads what is read at first use
  if (times < 1) return 0;
  start = real_seconds();
  const double ours = cpu_seconds_of([&] { filter(filter_execute, messages, times, threads); });
  const double real = real_seconds() - start;
  const double floor = cpu_seconds_of([&] {
    for (int i = 0; i < times; ++i) read_lines(messages);
  });
  const double count = static_cast<double>(messages.ids.size()) * times;
  std::fprintf(stderr,
               "%.0f messages: %.2f us of CPU each, %.0f per second; fgets %.2f us; ratio %.2f; loading %.1f ms\n",
               count, ours / count * 1e6, count / real, floor / count * 1e6, ours / floor, loading * 1e3);
  return 0;
}
