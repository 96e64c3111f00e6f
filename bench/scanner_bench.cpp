// What the scanners cost: the four scans when no filter asks them, and messages through FilterExecute's road with a
// scanner that answers at once, without and with counters ("Update Statistics") that are stored while they run.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "agent/filter_execute.h"
#include "agent/lifecycle.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "providers/scanner_library.h"
#include "providers/scanner_provider.h"
#include "providers/scanners.h"
#include "ratios.h"
#include "workload.h"

namespace pv::bench {
namespace {

constexpr int kFilters = 20;

// A server with all scanners loaded. They answer at once, and find nothing.
class ScannerServer : public FilterServer {
 public:
  ScannerServer(int filters, std::uint32_t update_statistics) : FilterServer(filters) {
    set_number(kRootKey, "Update Statistics", update_statistics);
    set_number(kAgentKey, "Bayesian Filtering Status", 1);
    set_number(kAgentKey, "SpamAssassin Enabled", 1);
    set_number(kSmtpKey, "Domain Keys Status", 1);
    set_number(kAgentKey, "Antivirus Status", 1);
    for (const char* name : {"PVFLTMBF", "PVFLTMSA", "PVDomainKeys", "PVAVGEN"}) {
      test::install_scanner(*this, "whole", name);
      ScannerScript script;
      script.noted = false;
      script.result = 0;
      scanners_.emplace_back(std::make_unique<test::ScannerLibrary>(*this, name))->set(script);
    }
  }

  // The first filter asks the Bayesian scanner.
  void ask_bayesian() const { criteria("f0", {{kSpamProbability, "90"}}); }

  bool asked() const { return scanners_.front()->number_of_calls() > 0; }

 private:
  std::vector<std::unique_ptr<test::ScannerLibrary>> scanners_;
};

void ScansNobodyAsksFor(benchmark::State& state) {
  const ScannerServer server(1, 1);
  attach();
  FilterSet set;
  set.filter_count = static_cast<int>(state.range(0));
  set.filters.resize(static_cast<std::size_t>(set.filter_count));
  const MessageContext message;
  MatchResults results;
  AllocateMatchResults(set, results);
  for (auto _ : state) {
    ScanBayesian(kSpamProbability, message, set, results);
    ScanSpamAssassin(kSpamAssassin, message, set, results);
    ScanDkim(kDkim, message, set, results);
    ScanAntivirus(kHasVirus, message, set, results);
  }
  detach();
}

std::unique_ptr<ScannerServer> server;  // while a benchmark runs

std::string message_id(int thread) {
  return "S" + std::to_string(thread) + ".MAI";
}

void start(const benchmark::State& state) {
  server = std::make_unique<ScannerServer>(kFilters, static_cast<std::uint32_t>(state.range(0)));
  server->ask_bayesian();
  for (int i = 0; i < 2; ++i) server->queue(message_id(i), kCommandFile, message_text(1));
  attach();
}

void stop(const benchmark::State&) {
  detach();
  server.reset();
}

void MessagesWithStatistics(benchmark::State& state) {
  const std::string id = message_id(state.thread_index());
  for (auto _ : state) filter_queued_message(id, "SMTP");
  if (!server->asked()) state.SkipWithError("no scanner was asked");
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(ScansNobodyAsksFor)->Arg(1)->Arg(20)->Arg(100);  // filters
BENCHMARK(MessagesWithStatistics)
    ->Arg(0)  // "Update Statistics"
    ->Arg(1)
    ->ThreadRange(1, 2)
    ->MeasureProcessCPUTime()  // the thread that writes what was put off counts too
    ->UseRealTime()
    ->MinTime(2)
    ->Setup(start)
    ->Teardown(stop)
    ->Unit(benchmark::kMicrosecond);

const Ratio kOne("CPU time of a message with counters, to one without, 1 thread",
                 "MessagesWithStatistics/1/min_time:2.000/process_time/real_time/threads:1",
                 "MessagesWithStatistics/0/min_time:2.000/process_time/real_time/threads:1");
const Ratio kTwo("CPU time of a message with counters, to one without, 2 threads",
                 "MessagesWithStatistics/1/min_time:2.000/process_time/real_time/threads:2",
                 "MessagesWithStatistics/0/min_time:2.000/process_time/real_time/threads:2");
const Ratio kReal("real time of a message with counters, to one without, 1 thread",
                  "MessagesWithStatistics/1/min_time:2.000/process_time/real_time/threads:1",
                  "MessagesWithStatistics/0/min_time:2.000/process_time/real_time/threads:1", RatioOf::kRealTime);

}  // namespace
}  // namespace pv::bench
