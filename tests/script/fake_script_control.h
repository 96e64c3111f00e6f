// A script control that does what a test says and tells what was asked of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/script_control.h"

namespace pv::test {

struct RunOutcome {
  std::int32_t code = 0;
  platform::ScriptValue value = {};
};

// What the controls do, and the calls made of them in order ("create", "Language VBScript", "Run F", "release" ...).
struct FakeScripting {
  std::int32_t create = 0;
  std::int32_t set_language = 0;
  std::int32_t add_code = 0;
  RunOutcome function = {};     // of any function but the next
  RunOutcome result_data = {};  // of PV_GetResultData
  std::vector<std::string> calls = {};
};

// While it lives, the script host has its controls from `scripting`. One at a time.
class FakeScriptControls {
 public:
  explicit FakeScriptControls(FakeScripting& scripting);
  ~FakeScriptControls();
  FakeScriptControls(const FakeScriptControls&) = delete;
  FakeScriptControls& operator=(const FakeScriptControls&) = delete;
};

}  // namespace pv::test
