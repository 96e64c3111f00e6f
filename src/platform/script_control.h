// The system's script control: runs programs in the languages that the system has engines for.
//
// Outcomes are the system's codes: 0 and above for success, below 0 for a failure.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pv::platform {

// What a function of a program gave, by the language's own conversions.
struct ScriptValue {
  std::int16_t number = 0;               // 0 also when it is no number of 16 bits
  std::optional<std::string> text = "";  // nullopt: it has none (Null, most objects)
};

// One control with one program. Used by the thread that created it alone, which must be in a COM apartment.
class ScriptControl {
 public:
  virtual ~ScriptControl() = default;

  [[nodiscard]] virtual std::int32_t set_language(std::string_view language) = 0;

  // Compiles the program into the control; a failure is a mistake in the program.
  [[nodiscard]] virtual std::int32_t add_code(std::string_view program) = 0;

  // Calls a function of the program without arguments. `value` is what it gave, also after a failure: then most often
  // nothing.
  [[nodiscard]] virtual std::int32_t run(std::string_view function_name, ScriptValue& value) = 0;

  // One line of at most 127 bytes about the failure that the last call answered; the system's text unless the control
  // knows more.
  virtual std::string failure_text(std::int32_t code) const;
};

// A fresh control, or nullptr with the system's code in `failure`. A system without a script control answers
// 0x80040154.
std::unique_ptr<ScriptControl> create_script_control(std::int32_t& failure);

// The system's text for a failure code, without a line end; empty when it has none of at most 127 bytes.
std::string script_failure_text(std::int32_t code);

}  // namespace pv::platform
