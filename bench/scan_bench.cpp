// The scan of a message, by the size of its body, without a criterion and with one of 10 words against every body line.
// The floors only read the lines of the same file.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "filters/criteria_keywords.h"
#include "heap_count.h"
#include "platform/file.h"
#include "queue/queue_paths.h"
#include "ratios.h"
#include "scan/message_lines.h"
#include "scan/message_scan.h"
#include "workload.h"

namespace pv::bench {
namespace {

// A message in a queue, its file written piece by piece.
class QueuedMessage {
 public:
  explicit QueuedMessage(std::int64_t body_bytes) {
    context.directories.connector_root.cut(tree_.path());
    context.connector.cut("SMTP");
    context.message_id.cut("B.MAI");
    tree_.make_directory("SMTP/Inbound/Messages");
    std::ofstream out(path(), std::ios::binary);
    out << kHeaders;
    for (std::int64_t size = 0; size < body_bytes; size += static_cast<std::int64_t>(kTextLineSize)) out << kTextLine;
    out.close();
    size_ = static_cast<std::int64_t>(std::filesystem::file_size(path()));
  }
  std::string path() const { return message_file_path(context, Queue::kInbound); }
  std::int64_t size() const { return size_; }

  MessageContext context;

 private:
  test::TemporaryDirectory tree_;
  std::int64_t size_ = 0;
};

void measure_scan(benchmark::State& state, const FilterSet& set) {
  const QueuedMessage message(state.range(0));
  MatchResults results;
  AllocateMatchResults(set, results);
  results.message = &message.context;
  const HeapCount heap;
  for (auto _ : state) benchmark::DoNotOptimize(ScanMessage(message.context, set, results));
  state.SetBytesProcessed(state.iterations() * message.size());
  state.counters["peak_heap"] = static_cast<double>(heap.peak());
}

void ScanOnly(benchmark::State& state) {
  measure_scan(state, FilterSet());
}

void ScanTenBodyWords(benchmark::State& state) {
  FilterSet set;
  set.filters.emplace_back().slots[kBody] = {1, words(0, 10, '\t'), 1, 1};
  set.filter_count = 1;
  measure_scan(state, set);
}

void ScanFloorReadLine(benchmark::State& state) {
  const QueuedMessage message(state.range(0));
  const HeapCount heap;
  for (auto _ : state) {
    platform::InputFile file;
    if (!file.open(message.path(), platform::FileMode::kBinary)) return state.SkipWithError("cannot be opened");
    while (const auto line = file.read_line(kScanLine)) benchmark::DoNotOptimize(line->data());
  }
  state.SetBytesProcessed(state.iterations() * message.size());
  state.counters["peak_heap"] = static_cast<double>(heap.peak());
}

void ScanFloorFgets(benchmark::State& state) {
  const QueuedMessage message(state.range(0));
  for (auto _ : state) {
    std::FILE* const file = std::fopen(message.path().c_str(), "rb");
    if (file == nullptr) return state.SkipWithError("cannot be opened");
    char line[kScanLine];
    while (std::fgets(line, sizeof line, file) != nullptr) benchmark::DoNotOptimize(line[0]);
    std::fclose(file);
  }
  state.SetBytesProcessed(state.iterations() * message.size());
}

constexpr std::int64_t kKilobyte = 1000;
constexpr std::int64_t kMegabyte = 1000 * kKilobyte;

BENCHMARK(ScanOnly)->Arg(kKilobyte)->Arg(kMegabyte)->Arg(100 * kMegabyte);  // bytes of the body
BENCHMARK(ScanTenBodyWords)->Arg(kKilobyte)->Arg(kMegabyte)->Arg(100 * kMegabyte);
BENCHMARK(ScanFloorReadLine)->Arg(kKilobyte)->Arg(kMegabyte)->Arg(100 * kMegabyte);
BENCHMARK(ScanFloorFgets)->Arg(kKilobyte)->Arg(kMegabyte)->Arg(100 * kMegabyte);

const Ratio kFgets("a scan of 1 MB without criteria, to fgets", "ScanOnly/1000000", "ScanFloorFgets/1000000");
const Ratio kReadLine("reading 1 MB with read_line, to fgets", "ScanFloorReadLine/1000000", "ScanFloorFgets/1000000");
const Ratio kTenWords("a scan of 1 MB with 10 body words, to fgets", "ScanTenBodyWords/1000000",
                      "ScanFloorFgets/1000000");

}  // namespace
}  // namespace pv::bench
