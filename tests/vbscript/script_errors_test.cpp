// How scripts end that nobody helps: number, text and place of the error.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

#include "vbscript/engine.h"
#include "vbscript/limits.h"

namespace pv::vbscript {
namespace {

constexpr auto kTimeLimit = static_cast<std::int32_t>(0x80004004);

std::string outcome_text(const std::optional<ScriptError>& error) {
  if (!error) return "no error";
  return std::to_string(error->number) + " at " + std::to_string(error->at.line) + ":" +
         std::to_string(error->at.column) + ": " + error->description;
}

std::string run(std::string_view script) {
  Engine engine;
  return outcome_text(engine.add_code(script));
}

struct ErrorCase {
  const char* what;
  std::string_view script;
  const char* outcome;
};

constexpr ErrorCase kErrors[] = {
    {"none", "x = 1", "no error"},
    {"a statement", "x = 1\n  y = 1 / 0", "11 at 2:3: Division by zero"},
    {"behind a colon", "x = 1 : y = 1 / 0", "11 at 1:9: Division by zero"},
    {"on a continued line", "x = _\n  1 / 0", "11 at 1:1: Division by zero"},
    {"in a procedure", "Sub s\n  x = 1 / 0\nEnd Sub\ns", "11 at 2:3: Division by zero"},
    {"in a method", "Class C\nSub s\nx = 1 / 0\nEnd Sub\nEnd Class\nSet o = New C\no.s", "11 at 3:1: Division by zero"},
    {"behind a line that raised but went on", "On Error Resume Next\nx = 1 / 0\nOn Error GoTo 0\nx = CInt(99999)",
     "6 at 4:1: Overflow: 'CInt'"},
    {"an error raised by the script", "x = 1\nErr.Raise 1000, \"mine\", \"text\"", "1000 at 2:1: text"},
    {"For from no number", "For i = \"x\" To 2\nNext", "13 at 1:1: Type mismatch: '[string: \"x\"]'"},
    {"For Each in no collection", "For Each i In 5\nNext", "451 at 1:1: Object not a collection"},
    {"an undeclared loop variable", "Option Explicit\nFor i = 1 To 2\nNext", "500 at 2:1: Variable is undefined: 'i'"},
    {"recursion without end", "Sub s\n  s\nEnd Sub\ns", "28 at 2:3: Out of stack space: 's'"},
    {"text without end", "s = \"x\"\nDo\ns = s & s\nLoop", "14 at 3:1: Out of string space"},
};

TEST(ScriptErrors, HaveNumberPlaceAndText) {
  for (const ErrorCase& c : kErrors) EXPECT_EQ(run(c.script), c.outcome) << c.what;
}

TEST(ScriptErrors, CompileErrorsAreToldApart) {
  Engine engine;
  const std::optional<ScriptError> compile = engine.add_code("x = 1\nIf x Then\ny = 2");
  ASSERT_TRUE(compile.has_value());
  EXPECT_TRUE(compile->compile_error);
  EXPECT_EQ(outcome_text(compile), "1014 at 3:6: Expected 'End'");
  EXPECT_EQ(compile->source, "Microsoft VBScript compilation error");
  EXPECT_EQ(static_cast<std::uint32_t>(compile->hresult()), 0x800A03F6U);
  const std::optional<ScriptError> runtime = engine.add_code("x = 1 / 0");
  ASSERT_TRUE(runtime.has_value());
  EXPECT_FALSE(runtime->compile_error);
  EXPECT_EQ(runtime->source, "Microsoft VBScript runtime error");
  EXPECT_EQ(static_cast<std::uint32_t>(runtime->hresult()), 0x800A000BU);
  const std::optional<ScriptError> raised = engine.add_code("Err.Raise 1000, \"mine\"");
  ASSERT_TRUE(raised.has_value());
  EXPECT_EQ(raised->source, "mine");
}

TEST(ScriptErrors, CheckingRunsNothing) {
  EXPECT_EQ(outcome_text(Engine::check("x = 1 / 0")), "no error");
  EXPECT_EQ(outcome_text(Engine::check("x = 1 /")), "1002 at 1:8: Syntax error");
}

// Whatever the script does about errors.
TEST(ScriptErrors, TimeIsLimited) {
  constexpr std::string_view kEndless[] = {
      "Do\nLoop",
      "While True\nWend",
      "For i = 1 To 2 Step 0\nNext",
      "Do : x = x + 1 : Loop Until x < 0",
      "On Error Resume Next\nDo\nx = 1 / 0\nLoop",
      "Sub s\nOn Error Resume Next\nDo\nLoop\nEnd Sub\nOn Error Resume Next\ns\nDo\nLoop",
      "Sub s(n)\nOn Error Resume Next\ns n\ns n\nEnd Sub\ns 1",
      "Do\nExecute \"x = 1\"\nLoop",
      "s = String(1000000, \"x\")\nDo\nx = Replace(s, \"x\", \"y\")\nLoop",
      "On Error Resume Next\nSet r = New RegExp\nr.Pattern = \"(x+x+)+y\"\ns = String(1000, \"x\")\nDo\nr.Test s\nLoop",
      "Class C\nSub Class_Terminate\nDo\nLoop\nEnd Sub\nEnd Class\nSet o = New C\nSet o = Nothing",
  };
  for (const std::string_view script : kEndless) {
    Engine engine;
    engine.charge_steps(kMaxSteps / 10 * 9);
    const std::optional<ScriptError> error = engine.add_code(script);
    ASSERT_TRUE(error.has_value()) << script;
    EXPECT_EQ(error->number, kTimeLimit) << script;
    EXPECT_EQ(error->hresult(), kTimeLimit);
  }
}

TEST(ScriptErrors, OneErrorDoesNotSpoilTheEngine) {
  Engine engine;
  ASSERT_FALSE(engine.add_code("Function f\nf = 1 / x\nEnd Function\nx = 0").has_value());
  Value result;
  EXPECT_EQ(outcome_text(engine.run("f", result)), "11 at 2:1: Division by zero");
  ASSERT_FALSE(engine.add_code("x = 4").has_value());
  EXPECT_FALSE(engine.run("F", result).has_value());
  EXPECT_EQ(engine.as_text(result), "0.25");
  EXPECT_EQ(outcome_text(engine.run("g", result)).substr(0, 2), "13");
}

}  // namespace
}  // namespace pv::vbscript
