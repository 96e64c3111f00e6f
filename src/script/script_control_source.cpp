#include "script/script_control_source.h"

#include <atomic>

#include "script/engine_control.h"

namespace pv {
namespace {

// "Class not registered" and "Invalid class string": what a system without the control answers.
bool has_no_control(std::int32_t failure) {
  const auto code = static_cast<std::uint32_t>(failure);
  return code == 0x80040154U || code == 0x800401F3U;
}

std::unique_ptr<platform::ScriptControl> system_or_own_control(std::int32_t& failure) {
  std::unique_ptr<platform::ScriptControl> control = platform::create_script_control(failure);
  if (control != nullptr || !has_no_control(failure)) return control;
  failure = 0;
  return new_engine_control();
}

constinit std::atomic<ScriptControlFactory> control_factory = system_or_own_control;

}  // namespace

std::unique_ptr<platform::ScriptControl> new_script_control(std::int32_t& failure) {
  return control_factory.load()(failure);
}

void replace_script_controls_for_test(ScriptControlFactory factory) {
  control_factory = factory != nullptr ? factory : system_or_own_control;
}

}  // namespace pv
