// Real programs through the control that the host gets: the system's, or our own engine. Only what both do.
#include "platform/script_control.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/agent_settings.h"
#include "platform/com.h"
#include "script/script_host.h"

namespace pv {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class InApartment {
 public:
  InApartment() { platform::initialise_com(); }
  ~InApartment() { platform::uninitialise_com(); }
  InApartment(const InApartment&) = delete;
  InApartment& operator=(const InApartment&) = delete;
};

struct Outcome {
  std::int32_t verdict = 0;
  std::string result_text;  // "old" when nothing was written
  std::string lines;
};

Outcome run(std::string_view program, bool always_fill_result = false) {
  settings().debug_status = 2;
  char text[64] = "old";
  testing::internal::CaptureStdout();
  Outcome outcome;
  outcome.verdict = run_script(program, "PV_Execute", text, always_fill_result);
  outcome.lines = testing::internal::GetCapturedStdout();
  outcome.result_text = text;
  settings().debug_status = 0;
  return outcome;
}

std::string function(std::string_view value, std::string_view result = R"("SCRIPT")") {
  return std::string("Function PV_GetResultData()\r\nPV_GetResultData=") + std::string(result) +
         "\r\nEnd Function\r\nFunction PV_Execute\r\nPV_Execute=" + std::string(value) + "\r\nEnd Function\r\n";
}

struct ValueCase {
  const char* what;
  const char* value;
  std::int32_t verdict;
};

TEST(ScriptControl, ValuesComeBackAsVerdicts) {
  const InApartment apartment;
  constexpr ValueCase kCases[] = {
      {"a sum", "2+2", 4},      {"true", "True", -1},          {"false", "False", 0},
      {"a Long", "CLng(7)", 7}, {"a Byte", "CByte(255)", 255}, {"beyond 16 bits", "65537", 0},
      {"a text", R"("1")", 1},  {"nothing", "Empty", 0},       {"half is even", "2.5", 2},
      {"null", "Null", 0},      {"no number", R"("x")", 0},
  };
  for (const ValueCase& c : kCases) {
    const Outcome outcome = run(function(c.value));
    EXPECT_EQ(outcome.verdict, c.verdict) << c.what;
    EXPECT_THAT(outcome.lines, HasSubstr("Script executed successfully.\n")) << c.what;
  }
}

struct ResultCase {
  const char* what;
  const char* result;
  const char* result_text;
};

TEST(ScriptControl, ResultTextsComeBackInTheAgentsCodePage) {
  const InApartment apartment;
  constexpr ResultCase kCases[] = {
      {"a text", R"("SCRIPT")", "SCRIPT"},
      {"the empty text", R"("")", ""},
      {"a byte above 127", "\"caf\xE9\"", "caf\xE9"},
      {"nothing", "Empty", ""},
      {"a number", "5", "5"},
      {"true", "True", "True"},
      {"null has none", "Null", "old"},
  };
  for (const ResultCase& c : kCases) {
    const Outcome outcome = run(function("1", c.result));
    EXPECT_EQ(outcome.verdict, 1) << c.what;
    EXPECT_EQ(outcome.result_text, c.result_text) << c.what;
  }
}

TEST(ScriptControl, AMistakeInTheProgramIsASyntaxError) {
  const InApartment apartment;
  const Outcome outcome = run("Function PV_Execute\r\nIf If\r\nEnd Function\r\n", true);
  EXPECT_EQ(outcome.verdict, 0);
  EXPECT_THAT(outcome.lines, HasSubstr("\nSyntax Error Occurred in Filtering Script\nScript in error follows:\n"));
  EXPECT_THAT(outcome.result_text, AllOf(StartsWith("Script Syntax Error: HRESULT = -"), EndsWith(".")));
}

TEST(ScriptControl, ARunThatFailsIsNoSyntaxError) {
  const InApartment apartment;
  constexpr const char* kPrograms[] = {
      "' PV_Execute is not here\r\nx = 1\r\n",                                // no such function
      "Function PV_Execute\r\nPV_Execute = CInt(\"x\")\r\nEnd Function\r\n",  // an error in it
  };
  for (const char* program : kPrograms) {
    const Outcome outcome = run(program, true);
    EXPECT_EQ(outcome.verdict, 0) << program;
    EXPECT_THAT(outcome.lines, HasSubstr("Script failed. 'PV_Execute()' function returned value = 0.\n"
                                         "PostVane Filter Script incurred an error: (-"))
        << program;
    EXPECT_EQ(outcome.result_text, "") << program;
  }
}

}  // namespace
}  // namespace pv
