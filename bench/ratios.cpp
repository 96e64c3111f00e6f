#include "ratios.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace pv::bench {
namespace {

std::vector<Ratio>& ratios() {
  static std::vector<Ratio> all;
  return all;
}

struct Seconds {
  double cpu;
  double real;
  double of(RatioOf which) const { return which == RatioOf::kCpuTime ? cpu : real; }
};

std::map<std::string, Seconds>& fastest() {
  static std::map<std::string, Seconds> seconds;  // of one iteration, by the benchmark's name
  return seconds;
}

}  // namespace

Ratio::Ratio(const char* what_it_is, const char* name_over, const char* name_under, RatioOf which)
    : what(what_it_is), over(name_over), under(name_under), of(which) {
  ratios().push_back(*this);
}

void ReporterWithRatios::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0) continue;
    const double iterations = static_cast<double>(run.iterations);
    const Seconds seconds{run.cpu_accumulated_time / iterations, run.real_accumulated_time / iterations};
    const auto [found, added] = fastest().emplace(run.run_name.str(), seconds);
    if (added) continue;
    found->second.cpu = std::min(found->second.cpu, seconds.cpu);
    found->second.real = std::min(found->second.real, seconds.real);
  }
}

void ReporterWithRatios::Finalize() {
  GetOutputStream() << "\nRatios (CPU time, where nothing else is said)\n";
  for (const Ratio& ratio : ratios()) {
    const auto over = fastest().find(ratio.over);
    const auto under = fastest().find(ratio.under);
    if (over == fastest().end() || under == fastest().end()) continue;
    char line[256];
    std::snprintf(line, sizeof line, "%8.2f  %s\n", over->second.of(ratio.of) / under->second.of(ratio.of), ratio.what);
    GetOutputStream() << line;
  }
}

}  // namespace pv::bench
