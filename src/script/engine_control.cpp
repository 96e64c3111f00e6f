#include "script/engine_control.h"

#include <chrono>
#include <optional>
#include <string>

#include "common/text_search.h"
#include "platform/clock.h"
#include "vbscript/clock.h"
#include "vbscript/engine.h"

namespace pv {
namespace {

constexpr std::int32_t kInvalidArgument = static_cast<std::int32_t>(0x80070057);
constexpr std::size_t kFailureText = 127;  // bytes, as the system's texts

// "Type mismatch: 'x' (line 12, column 3)"; a long text is cut, the place stays.
std::string failure_line(const vbscript::ScriptError& error) {
  const std::string place =
      " (line " + std::to_string(error.at.line) + ", column " + std::to_string(error.at.column) + ")";
  return error.description.substr(0, kFailureText - place.size()) + place;
}

// Scripts see the time that the agent sees.
vbscript::LocalTime time_of_day() {
  const platform::LocalTime now = platform::local_time();
  const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(since_1970).count() % 1000;
  return {now.year, now.month, now.day, now.hour, now.minute, now.second, static_cast<int>(ms)};
}

class EngineControl : public platform::ScriptControl {
 public:
  std::int32_t set_language(std::string_view language) override {
    return equals_nocase(language, "VBScript") ? 0 : kInvalidArgument;
  }

  std::int32_t add_code(std::string_view program) override { return keep(engine_.add_code(program)); }

  std::int32_t run(std::string_view function_name, platform::ScriptValue& value) override {
    vbscript::Value result;
    const std::int32_t outcome = keep(engine_.run(function_name, result));
    value.number = engine_.as_integer(result).value_or(0);
    value.text = engine_.as_text(result);
    return outcome;
  }

  std::string failure_text(std::int32_t code) const override {
    return error_ ? failure_line(*error_) : platform::script_failure_text(code);
  }

 private:
  std::int32_t keep(std::optional<vbscript::ScriptError> error) {
    error_ = std::move(error);
    return error_ ? error_->hresult() : 0;
  }

  vbscript::Engine engine_;
  std::optional<vbscript::ScriptError> error_;  // of the last call
};

}  // namespace

std::unique_ptr<platform::ScriptControl> new_engine_control() {
  vbscript::set_clock(time_of_day);
  return std::make_unique<EngineControl>();
}

}  // namespace pv
