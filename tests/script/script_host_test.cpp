#include "script/script_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/agent_settings.h"
#include "script/fake_script_control.h"

namespace pv {
namespace {

using platform::ScriptValue;
using test::FakeScripting;
using testing::ElementsAre;

constexpr std::int32_t kNotRegistered = -2147221164;
// What a function gave.
ScriptValue number(std::int16_t number) {
  return {number, std::to_string(number)};
}
ScriptValue text(std::string text) {
  return {0, std::move(text)};
}
ScriptValue null() {
  return {0, std::nullopt};
}

constexpr char kProgram[] = "Function F\r\nEnd Function\r\n";
constexpr char kShown[] = "Script before execution:\nFunction F\r\nEnd Function\r\n";
constexpr char kWithResult[] = "Function F\nFunction pv_getresultdata";

struct Outcome {
  std::int32_t verdict = 0;
  std::string result_text;  // with what stood there before, "old", when nothing was written
  std::string lines;
};

Outcome run(FakeScripting& scripting, std::string_view program, std::string_view function, bool always_fill_result,
            std::size_t room = 64) {
  const test::FakeScriptControls controls(scripting);
  settings().debug_status = 2;
  char text[64] = "old";
  testing::internal::CaptureStdout();
  Outcome outcome;
  outcome.verdict = run_script(program, function, {text, room}, always_fill_result);
  outcome.lines = testing::internal::GetCapturedStdout();
  outcome.result_text = text;
  settings().debug_status = 0;
  return outcome;
}

struct FailureCase {
  const char* what;
  FakeScripting scripting;
  const char* function;
  bool always_fill_result;
  std::string lines;
  const char* result_text;
};

TEST(ScriptHost, FailuresGiveZeroAndAreTold) {
  const std::string error_line =
      "PostVane Filter Script incurred an error: (-2147221164) " + platform::script_failure_text(kNotRegistered) + "\n";
  const std::string syntax_error = std::string(kShown) + "Syntax Error Occurred in Filtering Script\n";
  const std::string in_error = std::string("Script in error follows:\n") + kProgram;
  const std::string no_function =
      "Error executing script. Script does not define a function with the nominated name.\n";
  const FailureCase cases[] = {
      {"no control", {.create = kNotRegistered}, "F", false, error_line, "old"},
      {"no control, filling", {.create = kNotRegistered}, "F", true, error_line, ""},
      {"a mistake in the program",
       {.add_code = kNotRegistered},
       "f",
       false,
       syntax_error + in_error + error_line,
       "old"},
      {"a mistake, filling",
       {.add_code = kNotRegistered},
       "F",
       true,
       syntax_error + in_error + error_line,
       "Script Syntax Error: HRESULT = -2147221164."},
      {"a mistake, and no such name", {.add_code = kNotRegistered}, "G", false, syntax_error + error_line, "old"},
      {"a code without a text",
       {.add_code = -2146827286},
       "G",
       true,
       syntax_error + "PostVane Filter Script incurred an error: (-2146827286) \n",
       "Script Syntax Error: HRESULT = -2146827286."},
      {"a name that does not occur", {.function = {0, number(1)}}, "G", false, kShown + no_function, "old"},
      {"the same, filling", {.function = {0, number(1)}}, "G", true, kShown + no_function, ""},
      {"the run fails",
       {.function = {kNotRegistered, {}}},
       "F",
       false,
       std::string(kShown) + "Script failed. 'PV_Execute()' function returned value = 0.\n" + error_line,
       "old"},
      {"the run fails with a value",
       {.function = {kNotRegistered, number(-7)}},
       "F",
       true,
       std::string(kShown) + "Script failed. 'PV_Execute()' function returned value = -7.\n" + error_line,
       ""},
  };
  for (const FailureCase& c : cases) {
    FakeScripting scripting = c.scripting;
    const Outcome outcome = run(scripting, kProgram, c.function, c.always_fill_result);
    EXPECT_EQ(outcome.verdict, 0) << c.what;
    EXPECT_EQ(outcome.lines, c.lines) << c.what;
    EXPECT_EQ(outcome.result_text, c.result_text) << c.what;
    EXPECT_TRUE(scripting.calls.empty() || scripting.calls.back() == "release") << c.what;
  }
}

struct VerdictCase {
  const char* what;
  ScriptValue value;
  std::int32_t verdict;
};

TEST(ScriptHost, TheVerdictIsAWholeNumberOf16Bits) {
  const VerdictCase cases[] = {
      {"one", number(1), 1},
      {"true keeps its sign", number(-1), -1},
      {"the lowest", number(-32768), -32768},
      {"never assigned", {}, 0},
      {"a text that holds one", ScriptValue{1, "1"}, 1},
      {"neither number nor text", null(), 0},
  };
  for (const VerdictCase& c : cases) {
    FakeScripting scripting{.function = {0, c.value}};
    const Outcome outcome = run(scripting, kProgram, "F", false);
    EXPECT_EQ(outcome.verdict, c.verdict) << c.what;
    EXPECT_EQ(outcome.lines, std::string(kShown) + "Script executed successfully.\nFunction Returned Value = " +
                                 std::to_string(c.verdict) + ".\n")
        << c.what;
  }
}

struct ResultCase {
  const char* what;
  const char* program;
  std::int16_t verdict;
  bool always_fill_result;
  bool asked;  // whether PV_GetResultData is run
  std::size_t room;
  test::RunOutcome result_data;
  const char* result_text;
};

TEST(ScriptHost, TheResultTextIsAskedForAndKeptByRule) {
  const ScriptValue eight = text("12345678");
  const ResultCase cases[] = {
      {"a verdict and a text", kWithResult, 1, false, true, 64, {0, eight}, "12345678"},
      {"a verdict below 0", kWithResult, -1, false, true, 64, {0, eight}, "12345678"},
      {"verdict 0", kWithResult, 0, false, false, 64, {0, eight}, "old"},
      {"verdict 0, filling", kWithResult, 0, true, true, 64, {0, eight}, "12345678"},
      {"no such function", kProgram, 1, false, false, 64, {0, eight}, "old"},
      {"no such function, filling", kProgram, 1, true, true, 64, {kNotRegistered, {}}, ""},
      {"no room", kWithResult, 1, false, false, 0, {0, eight}, "old"},
      {"no room, filling", kWithResult, 1, true, true, 0, {0, eight}, "old"},
      {"room for the end alone", kWithResult, 1, false, true, 1, {0, eight}, ""},
      {"one byte too long", kWithResult, 1, false, true, 8, {0, eight}, "1234567"},
      {"just fits", kWithResult, 1, false, true, 9, {0, eight}, "12345678"},
      {"nothing", kWithResult, 1, false, true, 64, {0, {}}, ""},
      {"a number", kWithResult, 1, false, true, 64, {0, number(5)}, "5"},
      {"what has no text", kWithResult, 1, false, true, 64, {0, null()}, "old"},
      {"its run fails", kWithResult, 1, false, true, 64, {kNotRegistered, eight}, "old"},
  };
  for (const ResultCase& c : cases) {
    FakeScripting scripting;
    scripting.function.value = number(c.verdict);
    scripting.result_data = c.result_data;
    const Outcome outcome = run(scripting, c.program, "F", c.always_fill_result, c.room);
    EXPECT_EQ(outcome.verdict, c.verdict) << c.what;
    EXPECT_EQ(outcome.result_text, c.result_text) << c.what;
    EXPECT_EQ(testing::Value(scripting.calls, testing::Contains("Run PV_GetResultData")), c.asked) << c.what;
  }
}

TEST(ScriptHost, TheSyntaxErrorTextIsCutToItsRoom) {
  FakeScripting scripting{.add_code = -1};
  EXPECT_EQ(run(scripting, kProgram, "F", true, 7).result_text, "Script");
  EXPECT_EQ(run(scripting, kProgram, "F", true, 0).result_text, "old");
}

TEST(ScriptHost, EachRunHasAControlOfItsOwn) {
  FakeScripting scripting{.set_language = -1, .function = {0, number(1)}};  // the language's failure is passed over
  run(scripting, "f", "F", false);
  run(scripting, "f", "F", false);
  EXPECT_THAT(scripting.calls, ElementsAre("create", "Language VBScript", "AddCode f", "Run F", "release",  //
                                           "create", "Language VBScript", "AddCode f", "Run F", "release"));
}

TEST(ScriptHost, ALongProgramIsShownWhole) {
  FakeScripting scripting{.function = {0, number(1)}};
  const std::string program = "F" + std::string(1 << 20, '%');
  EXPECT_EQ(run(scripting, program, "F", false).lines,
            "Script before execution:\n" + program + "Script executed successfully.\nFunction Returned Value = 1.\n");
}

}  // namespace
}  // namespace pv
