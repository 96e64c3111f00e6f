// One small message through the driver, by the number of filters, none of which fires. For a message that carries the
// mark of having been filtered, the scan ends at its first line: what is left is the cost outside the scan.
#include <benchmark/benchmark.h>

#include <string>

#include "agent/lifecycle.h"
#include "agent/process_filter.h"
#include "heap_count.h"
#include "ratios.h"
#include "workload.h"

namespace pv::bench {
namespace {

void measure(benchmark::State& state, const std::string& message) {
  const FilterServer server(static_cast<int>(state.range(0)));
  server.queue("B.MAI", kCommandFile, message);
  attach();
  ReportLine line;
  ProcessFilter("SMTP", "B.MAI", line);  // reads what is read at first use
  const HeapCount heap;
  for (auto _ : state) benchmark::DoNotOptimize(ProcessFilter("SMTP", "B.MAI", line));
  state.counters["heap/message"] = static_cast<double>(heap.allocated()) / static_cast<double>(state.iterations());
  state.counters["peak_heap"] = static_cast<double>(heap.peak());
  detach();
}

void MessageSmall(benchmark::State& state) {
  measure(state, message_text(1));
}

void MessageOutsideTheScan(benchmark::State& state) {
  measure(state, "X-PVFilter: 1\r\n" + message_text(1));
}

BENCHMARK(MessageSmall)->Arg(1)->Arg(20)->Arg(100)->Unit(benchmark::kMicrosecond);  // filters
BENCHMARK(MessageOutsideTheScan)->Arg(1)->Arg(20)->Arg(100)->Unit(benchmark::kMicrosecond);

const Ratio kScan("a small message with 20 filters, to what is outside its scan", "MessageSmall/20",
                  "MessageOutsideTheScan/20");
const Ratio kFilters("a small message with 100 filters, to 20", "MessageSmall/100", "MessageSmall/20");

}  // namespace
}  // namespace pv::bench
