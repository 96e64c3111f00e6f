#include "script/fake_script_control.h"

#include <memory>

#include "script/script_control_source.h"

namespace pv::test {
namespace {

FakeScripting* current = nullptr;

class FakeScriptControl : public platform::ScriptControl {
 public:
  ~FakeScriptControl() override { current->calls.emplace_back("release"); }

  std::int32_t set_language(std::string_view language) override {
    current->calls.emplace_back("Language ").append(language);
    return current->set_language;
  }
  std::int32_t add_code(std::string_view program) override {
    current->calls.emplace_back("AddCode ").append(program);
    return current->add_code;
  }
  std::int32_t run(std::string_view function_name, platform::ScriptValue& value) override {
    current->calls.emplace_back("Run ").append(function_name);
    const RunOutcome& outcome = function_name == "PV_GetResultData" ? current->result_data : current->function;
    value = outcome.value;
    return outcome.code;
  }
};

std::unique_ptr<platform::ScriptControl> make_fake_control(std::int32_t& failure) {
  failure = current->create;
  if (failure < 0) return nullptr;
  current->calls.emplace_back("create");
  return std::make_unique<FakeScriptControl>();
}

}  // namespace

FakeScriptControls::FakeScriptControls(FakeScripting& scripting) {
  current = &scripting;
  replace_script_controls_for_test(make_fake_control);
}

FakeScriptControls::~FakeScriptControls() {
  replace_script_controls_for_test(nullptr);
  current = nullptr;
}

}  // namespace pv::test
