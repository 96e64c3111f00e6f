// What the agent prints goes nowhere, so the report goes to standard error (--benchmark_out=FILE writes it to a file).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <iostream>

#include "ratios.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  if (std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
  pv::bench::ReporterWithRatios reporter;
  reporter.SetOutputStream(&std::cerr);
  reporter.SetErrorStream(&std::cerr);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
}
