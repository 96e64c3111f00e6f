// Reading a setting when nothing has changed, by the number of values in the file. The floor is the one question that
// every read has to ask: whether the file is still the same.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "common/registry_access.h"
#include "ratios.h"
#include "support/server_tree.h"

namespace pv::bench {
namespace {

// A server whose settings file holds `values` values more.
class SettingsServer : public test::ServerTree {
 public:
  explicit SettingsServer(std::int64_t values) {
    std::string text = read("settings.reg") + "\n[HKEY_LOCAL_MACHINE\\" + kAgentKey + "]\n\"Reload\"=dword:00000000\n";
    for (std::int64_t i = 0; i < values; ++i) text += "\"Value " + std::to_string(i) + "\"=dword:0000002a\n";
    write("settings.reg", text);
  }
};

void SettingsReadNumber(benchmark::State& state) {
  const SettingsServer server(state.range(0));
  std::uint32_t number = 0;
  for (auto _ : state) benchmark::DoNotOptimize(reg_read_dword(kAgentKey, "Reload", number));
}

void SettingsReadText(benchmark::State& state) {
  const SettingsServer server(state.range(0));
  BoundedText<1024> text;
  for (auto _ : state) benchmark::DoNotOptimize(reg_read_string(kRootKey, "Configuration Directory", text));
}

void SettingsFloorFileTime(benchmark::State& state) {
  const SettingsServer server(state.range(0));
  const std::filesystem::path path = server.path("settings.reg");
  for (auto _ : state) benchmark::DoNotOptimize(std::filesystem::last_write_time(path));
}

BENCHMARK(SettingsReadNumber)->Arg(10)->Arg(100)->Arg(1000);  // values in the file
BENCHMARK(SettingsReadText)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(SettingsFloorFileTime)->Arg(100);

const Ratio kNumber("reading a number, to asking for the file's time", "SettingsReadNumber/100",
                    "SettingsFloorFileTime/100");
const Ratio kText("reading a text, to asking for the file's time", "SettingsReadText/100", "SettingsFloorFileTime/100");
const Ratio kManyValues("reading a number among 1000 values, to 10", "SettingsReadNumber/1000",
                        "SettingsReadNumber/10");

}  // namespace
}  // namespace pv::bench
