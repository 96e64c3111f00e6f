// Real messages through the whole driver, none of which makes a filter act: envelope, scan, decision and results, with
// what the agent prints going nowhere. 20 filters with 13 words each, and one that names a word file. The floor reads
// the same files line by line.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "agent/lifecycle.h"
#include "agent/process_filter.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "heap_count.h"
#include "mail_text.h"
#include "ratios.h"
#include "support/server_tree.h"
#include "workload.h"

namespace pv::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kBeyondReach = 100000;  // matches that no message has, so that no filter fires

std::string joined(const std::vector<std::string>& words, std::size_t first, std::size_t count, char separator) {
  std::string text;
  for (std::size_t i = first; i < first + count && i < words.size(); ++i) text += words[i] + separator;
  if (!text.empty()) text.pop_back();
  return text;
}

class MailServer : public test::ServerTree {
 public:
  MailServer() {
    int number = 0;
    for (const std::string& file : mail_files()) {
      if (number++ % 10 != 0) continue;
      ids.push_back("M" + std::to_string(number) + ".MAI");
      queue(ids.back(), kCommandFile, "");
      fs::copy_file(file, path("queues/SMTP/Inbound/Messages/" + ids.back()), fs::copy_options::overwrite_existing);
    }
    if (!ids.empty()) return;
    ids.push_back("M.MAI");
    queue(ids.back(), kCommandFile, message_text(10000));
  }

  void add_filter(const std::string& name, const std::string& subject, const std::string& from,
                  const std::string& body) {
    std::string table;
    for (int slot = 0; slot < kSlotCount; ++slot) {
      const std::string& values = slot == kSubject ? subject : slot == kFrom ? from : slot == kBody ? body : kNone;
      table +=
          values.empty() ? "0\t\t\t\t\t0\r\n" : "1\t\t" + values + "\t\t\t" + std::to_string(kBeyondReach) + "\r\n";
    }
    write("conf/FILTERS/CRITERIA/" + name + ".TAB", table);
    filters_ += name + "\t1\t" + name + "\t\t" + name + "\r\n";
    write("conf/FILTERS/FILTER.TAB", filters_);
  }

  // The filters that every benchmark but one has.
  void add_usual_filters(std::size_t listed_words) {
    const std::vector<std::string> words = word_list(20 * 13 + listed_words, Asterisks::kNone);
    for (std::size_t i = 0; i < 20; ++i) {
      add_filter("f" + std::to_string(i), joined(words, 13 * i, 5, ','), joined(words, 13 * i + 5, 3, ','),
                 joined(words, 13 * i + 8, 5, ','));
    }
    write("conf/FILTERS/PATTERNS/list.txt", joined(words, 20 * 13, listed_words, '\n') + "\n");
    add_filter("list", "", "", "<REFERENCE><FILE>list.txt</FILE>");
  }

  std::vector<std::string> ids;

 private:
  inline static const std::string kNone;
  std::string filters_;
};

void filter_all(const MailServer& server, ReportLine& line) {
  for (const std::string& id : server.ids) benchmark::DoNotOptimize(ProcessFilter("SMTP", id, line));
}

void measure(benchmark::State& state, const MailServer& server) {
  attach();
  ReportLine line;
  filter_all(server, line);  // reads what is read at first use
  const HeapCount heap;
  for (auto _ : state) filter_all(server, line);
  const double messages = static_cast<double>(state.iterations()) * static_cast<double>(server.ids.size());
  state.counters["heap/message"] = static_cast<double>(heap.allocated()) / messages;
  state.SetItemsProcessed(static_cast<std::int64_t>(messages));
  detach();
}

void MailListedWords(benchmark::State& state) {
  MailServer server;
  server.set_number(kAgentKey, "Allow Pattern Caching", static_cast<std::uint32_t>(state.range(1)));
  server.add_usual_filters(static_cast<std::size_t>(state.range(0)));
  measure(state, server);
}

// The same 1000 body words in so many filters.
void MailFilters(benchmark::State& state) {
  MailServer server;
  const std::vector<std::string> words = word_list(1000, Asterisks::kNone);
  const std::size_t each = words.size() / static_cast<std::size_t>(state.range(0));
  for (std::size_t i = 0; i * each < words.size(); ++i) {
    server.add_filter("f" + std::to_string(i), "", "", joined(words, i * each, each, ','));
  }
  measure(state, server);
}

void MailFloorFgets(benchmark::State& state) {
  const MailServer server;
  static char line[2048];
  for (auto _ : state) {
    for (const std::string& id : server.ids) {
      std::FILE* const file = std::fopen(server.path("queues/SMTP/Inbound/Messages/" + id).c_str(), "rb");
      if (file == nullptr) return state.SkipWithError("cannot be opened");
      while (std::fgets(line, sizeof line, file) != nullptr) benchmark::DoNotOptimize(line[0]);
      std::fclose(file);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(server.ids.size()));
}

std::unique_ptr<MailServer> shared_server;  // while the benchmark of the threads runs

void start(const benchmark::State&) {
  shared_server = std::make_unique<MailServer>();
  shared_server->add_usual_filters(1000);
  attach();
}
void stop(const benchmark::State&) {
  detach();
  shared_server.reset();
}

void MailOnThreads(benchmark::State& state) {
  ReportLine line;
  std::size_t next = static_cast<std::size_t>(state.thread_index());
  for (auto _ : state) {
    benchmark::DoNotOptimize(ProcessFilter("SMTP", shared_server->ids[next % shared_server->ids.size()], line));
    next += static_cast<std::size_t>(state.threads());
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(MailListedWords)  // words in the file, "Allow Pattern Caching"
    ->Args({1000, 0})
    ->Args({1000, 1})
    ->Args({10, 0})
    ->Args({10000, 0})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(MailFilters)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);  // filters
BENCHMARK(MailFloorFgets)->Unit(benchmark::kMicrosecond);
BENCHMARK(MailOnThreads)
    ->ThreadRange(1, 2)
    ->UseRealTime()
    ->MinTime(2)
    ->Setup(start)
    ->Teardown(stop)
    ->Unit(benchmark::kMicrosecond);

const Ratio kFgets("mail with 20 filters and 1000 words, to fgets (mark: 4)", "MailListedWords/1000/0",
                   "MailFloorFgets");
const Ratio kCaching("mail without pattern caching, to with it (1.2)", "MailListedWords/1000/0",
                     "MailListedWords/1000/1");
const Ratio kListed("mail with 10000 words in a file, to 10", "MailListedWords/10000/0", "MailListedWords/10/0");
const Ratio kFilters("mail with 100 filters of 10 words, to 10 of 100 (1.5)", "MailFilters/100", "MailFilters/10");
const Ratio kThreads("mail per second of real time, two threads to one (1.9)",
                     "MailOnThreads/min_time:2.000/real_time/threads:1",
                     "MailOnThreads/min_time:2.000/real_time/threads:2", RatioOf::kRealTime);

}  // namespace
}  // namespace pv::bench
