// The results of one message: allocated, filled and released, by the number of filters.
#include <benchmark/benchmark.h>

#include <cstddef>

#include "filters/criteria_keywords.h"
#include "filters/match_results.h"
#include "heap_count.h"
#include "ratios.h"

namespace pv::bench {
namespace {

void measure(benchmark::State& state, bool all_match) {
  FilterSet set;
  set.filter_count = static_cast<std::int32_t>(state.range(0));
  set.filters.resize(static_cast<std::size_t>(state.range(0)));
  const HeapCount heap;
  for (auto _ : state) {
    MatchResults results;
    AllocateMatchResults(set, results);
    for (FilterIndex i = 1; all_match && i <= set.filter_count; ++i) results.match(i).set_match_value(kSubject, 0, "1");
    benchmark::DoNotOptimize(results.matches.data());
    ReleaseMatchResults(results);
  }
  state.counters["heap/message"] = static_cast<double>(heap.allocated()) / static_cast<double>(state.iterations());
  state.counters["peak_heap"] = static_cast<double>(heap.peak());
}

void ResultsNoneMatches(benchmark::State& state) {
  measure(state, false);
}

void ResultsEachHasAValue(benchmark::State& state) {
  measure(state, true);
}

BENCHMARK(ResultsNoneMatches)->Arg(1)->Arg(20)->Arg(100);  // filters
BENCHMARK(ResultsEachHasAValue)->Arg(1)->Arg(20)->Arg(100);

const Ratio kValues("results of 100 filters with one value each, to none", "ResultsEachHasAValue/100",
                    "ResultsNoneMatches/100");

}  // namespace
}  // namespace pv::bench
