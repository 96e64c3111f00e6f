// Ratios between benchmarks of one run, printed behind the table: what two programs measure on two days cannot be
// compared, what one program measures in one run can.
#pragma once

#include <benchmark/benchmark.h>

#include <vector>

namespace pv::bench {

enum class RatioOf {
  kCpuTime,   // of one iteration; what other programs do on the machine matters little
  kRealTime,  // for what threads gain; wants a machine that does nothing else
};

// Asks for the line "<over's time divided by under's>  <what>". Both are names as the table shows them; the line is
// left out when one of them did not run.
struct Ratio {
  Ratio(const char* what, const char* over, const char* under, RatioOf of = RatioOf::kCpuTime);
  const char* what;
  const char* over;
  const char* under;
  RatioOf of;
};

// The usual table, then the ratios. With repetitions the fastest one counts.
class ReporterWithRatios : public benchmark::ConsoleReporter {
 public:
  ReporterWithRatios() : ConsoleReporter(OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;
};

}  // namespace pv::bench
