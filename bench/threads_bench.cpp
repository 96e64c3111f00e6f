// Messages per second through the driver on one thread and on two, each with a message file of its own: 20 filters, a
// small message and one of 100 body lines. The floor shares nothing between its threads: its gain is what the machine
// has to give at the moment.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "agent/lifecycle.h"
#include "agent/process_filter.h"
#include "filters/match_pattern.h"
#include "ratios.h"
#include "workload.h"

namespace pv::bench {
namespace {

constexpr int kMostThreads = 2;
constexpr int kFilters = 20;

std::unique_ptr<FilterServer> server;  // while a benchmark runs

std::string message_id(int thread) {
  return "T" + std::to_string(thread) + ".MAI";
}

void start(const benchmark::State& state) {
  server = std::make_unique<FilterServer>(kFilters);
  const std::string message = message_text(static_cast<std::size_t>(state.range(0)) * kTextLineSize);
  for (int i = 0; i < kMostThreads; ++i) server->queue(message_id(i), kCommandFile, message);
  attach();
}

void stop(const benchmark::State&) {
  detach();
  server.reset();
}

void MessagesOnThreads(benchmark::State& state) {
  const std::string id = message_id(state.thread_index());
  ReportLine line;
  for (auto _ : state) benchmark::DoNotOptimize(ProcessFilter("SMTP", id, line));
  state.SetItemsProcessed(state.iterations());
}

void FloorOnThreads(benchmark::State& state) {
  const std::string list = words(0, 100, '\n');
  for (auto _ : state) {
    for (int i = 0; i < 100; ++i) benchmark::DoNotOptimize(MatchPattern(list, "absent", "\n", false));
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(MessagesOnThreads)
    ->Arg(1)  // body lines
    ->Arg(100)
    ->ThreadRange(1, kMostThreads)
    ->UseRealTime()
    ->MinTime(2)
    ->Setup(start)
    ->Teardown(stop)
    ->Unit(benchmark::kMicrosecond);

BENCHMARK(FloorOnThreads)->ThreadRange(1, kMostThreads)->UseRealTime()->MinTime(2)->Unit(benchmark::kMicrosecond);

const Ratio kFloor("work that shares nothing, real time, two threads to one",
                   "FloorOnThreads/min_time:2.000/real_time/threads:1",
                   "FloorOnThreads/min_time:2.000/real_time/threads:2", RatioOf::kRealTime);
const Ratio kSmall("messages per second of real time, two threads to one, 1 body line",
                   "MessagesOnThreads/1/min_time:2.000/real_time/threads:1",
                   "MessagesOnThreads/1/min_time:2.000/real_time/threads:2", RatioOf::kRealTime);
const Ratio kHundred("messages per second of real time, two threads to one, 100 body lines",
                     "MessagesOnThreads/100/min_time:2.000/real_time/threads:1",
                     "MessagesOnThreads/100/min_time:2.000/real_time/threads:2", RatioOf::kRealTime);

}  // namespace
}  // namespace pv::bench
