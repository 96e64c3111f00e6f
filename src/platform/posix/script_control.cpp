#include "platform/script_control.h"

namespace pv::platform {
namespace {

// What COM answers for a class that nobody provides (0x80040154).
constexpr std::int32_t kClassNotRegistered = -2147221164;

}  // namespace

std::unique_ptr<ScriptControl> create_script_control(std::int32_t& failure) {
  failure = kClassNotRegistered;
  return nullptr;
}

std::string ScriptControl::failure_text(std::int32_t code) const {
  return script_failure_text(code);
}

std::string script_failure_text(std::int32_t code) {
  return code == kClassNotRegistered ? "Class not registered" : "";
}

}  // namespace pv::platform
