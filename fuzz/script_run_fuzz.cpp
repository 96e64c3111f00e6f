// A script that is run: it ends within its limits, without an error or with one of VBScript's, and twice the same way.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "script_fragments.h"
#include "vbscript/engine.h"
#include "vbscript/limits.h"

namespace pv::fuzz {
namespace {

using vbscript::Engine;
using vbscript::ScriptError;
using vbscript::Value;

// Most of an input's time would go into loops without end; what they do shows in their first rounds.
constexpr std::int64_t kSteps = 300'000;
constexpr std::size_t kMostOutput = 4096;

struct Outcome {
  std::optional<ScriptError> error;
  std::string said;
};

Outcome run_once(std::string_view script) {
  Outcome outcome;
  Engine engine;
  engine.define("Say", [&outcome](Engine& in, std::span<const Value> arguments) {
    for (const Value& argument : arguments) {
      const std::optional<std::string> text = in.as_text(argument);
      if (text && outcome.said.size() < kMostOutput) outcome.said.append(*text).append("\n");
    }
    return Value();
  });
  engine.charge_steps(vbscript::kMaxSteps - kSteps);
  outcome.error = engine.add_code(script);
  if (!outcome.error) {
    Value result;
    outcome.error = engine.run("Main", result);
    engine.as_text(result);
    engine.as_integer(result);
  }
  require(engine.heap().bytes() <= vbscript::kMaxHeapBytes, "memory stays within its limit");
  return outcome;
}

bool depends_on_clock(std::string_view script) {
  std::string lower(script);
  for (char& byte : lower) byte = byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte;
  // A regular expression counts against the limit by the time it takes.
  for (const std::string_view word : {"now", "date", "time", "randomize", "rnd", "regexp"}) {
    if (lower.find(word) != std::string::npos) return true;
  }
  return lower.find("execute") != std::string::npos || lower.find("eval") != std::string::npos;
}

void require_error(const ScriptError& error) {
  require(!error.description.empty() || error.number != 0, "an error has a number or a text");
  if (error.compile_error) require(error.number >= 1001 && error.number <= 1058, "the number of a compile error");
}

void run(std::string_view script) {
  const Outcome first = run_once(script);
  if (first.error) require_error(*first.error);
  const std::optional<ScriptError> checked = Engine::check(script);
  require(checked.has_value() == (first.error && first.error->compile_error), "checking finds what compiling finds");
  if (depends_on_clock(script)) return;
  const Outcome second = run_once(script);
  require(first.said == second.said, "the same script says the same");
  require(first.error.has_value() == second.error.has_value(), "the same script ends the same way");
  if (first.error) require(first.error->number == second.error->number, "with the same error");
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::script_of(pv::fuzz::input_text(data, size)));
  return 0;
}
