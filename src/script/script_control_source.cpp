#include "script/script_control_source.h"

#include <atomic>

namespace pv {
namespace {

constinit std::atomic<ScriptControlFactory> control_factory = platform::create_script_control;

}  // namespace

std::unique_ptr<platform::ScriptControl> new_script_control(std::int32_t& failure) {
  return control_factory.load()(failure);
}

void replace_script_controls_for_test(ScriptControlFactory factory) {
  control_factory = factory != nullptr ? factory : platform::create_script_control;
}

}  // namespace pv
