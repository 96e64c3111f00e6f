// The engine as a host sees it: what it offers, what it gets back, and that nothing is left behind.
#include "vbscript/engine.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vbscript/limits.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

using Lines = std::vector<std::string>;

void offer_say(Engine& engine, Lines& said) {
  engine.define("Say", [&said](Engine& in, std::span<const Value> arguments) {
    said.push_back(in.as_text(arguments[0]).value_or("(no text)"));
    return Value();
  });
}

Lines said_by(std::string_view program) {
  Lines said;
  {
    Engine engine;
    offer_say(engine, said);
    const std::optional<ScriptError> error = engine.add_code(program);
    if (error) said.push_back(error->description);
  }
  return said;
}

TEST(Engine, HostFunctionsTakeAndGiveValues) {
  Engine engine;
  engine.define("Join3", [](Engine& in, std::span<const Value> arguments) {
    std::string text;
    for (const Value& argument : arguments) text += in.as_text(argument).value_or("?") + ";";
    return in.heap().text(text);
  });
  engine.define("Fail", [](Engine&, std::span<const Value>) -> Value { raise(ErrorCode::kInvalidCall, "Fail"); });
  ASSERT_FALSE(
      engine.add_code("Dim a(1), v\nv = 7 : a(1) = \"el\"\nr = Join3(v, a(1), (v + 1)) & join3(Null)\n"
                      "On Error Resume Next\nFail\nn = Err.Number\nFunction Get_r : Get_r = r & n : End Function"));
  Value result;
  ASSERT_FALSE(engine.run("GET_R", result));
  EXPECT_EQ(engine.as_text(result), "7;el;8;?;5");
}

struct ConversionCase {
  const char* what;
  std::string_view expression;
  std::optional<std::int16_t> integer;
  std::optional<std::string> text;
};
const ConversionCase kResults[] = {
    {"true is -1", "True", -1, "True"},
    {"half to even", "2.5", 2, "2.5"},
    {"a text that is a number", "\" 12 \"", 12, " 12 "},
    {"beyond 16 bits", "32768", std::nullopt, "32768"},
    {"nothing returned", "Empty", 0, ""},
    {"Null is no value", "Null", std::nullopt, std::nullopt},
    {"an array is no value", "Array(1)", std::nullopt, std::nullopt},
};

TEST(Engine, ResultsConvertAsCIntAndCStrDo) {
  for (const ConversionCase& c : kResults) {
    Engine engine;
    ASSERT_FALSE(engine.add_code("Function f\nf = " + std::string(c.expression) + "\nEnd Function")) << c.what;
    Value result;
    ASSERT_FALSE(engine.run("f", result)) << c.what;
    EXPECT_EQ(engine.as_integer(result), c.integer) << c.what;
    EXPECT_EQ(engine.as_text(result), c.text) << c.what;
  }
}

TEST(Engine, AnObjectConvertsByItsDefaultProperty) {
  Engine engine;
  ASSERT_FALSE(
      engine.add_code("Class C\nPublic Default Property Get V\nV = 41 + 1\nEnd Property\nEnd Class\n"
                      "Function f\nSet f = New C\nEnd Function"));
  Value result;
  ASSERT_FALSE(engine.run("f", result));
  EXPECT_EQ(engine.as_integer(result), 42);
}

TEST(Engine, AProgramThatDoesNotCompileChangesNothing) {
  Engine engine;
  ASSERT_FALSE(engine.add_code("Const c = 1\nFunction f\nf = \"old\" & c\nEnd Function"));
  const auto error =
      engine.add_code("Const c = 2\nFunction f\nf = \"new\"\nEnd Function\nFunction g\nEnd Function\nDim q\nDim q");
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->number, 1041);
  Value result;
  ASSERT_FALSE(engine.run("f", result));
  EXPECT_EQ(engine.as_text(result), "old1");
  EXPECT_TRUE(engine.run("g", result).has_value());
  ASSERT_FALSE(engine.add_code("Function h\nh = c\nEnd Function"));
  ASSERT_FALSE(engine.run("h", result));
  EXPECT_EQ(engine.as_text(result), "1");
}

TEST(Engine, ObjectsEndWithTheEngine) {
  constexpr std::string_view kClass =
      "Class C\nPublic Name, Other\nSub Class_Terminate\nSay \"-\" & Name\nEnd Sub\nEnd Class\n"
      "Set a = New C : a.Name = \"a\"\nSet b = New C : b.Name = \"b\"\n";
  EXPECT_EQ(said_by(kClass), (Lines{"-a", "-b"})) << "in the order of the variables";
  EXPECT_EQ(said_by(std::string(kClass) + "Set a.Other = b : Set b.Other = a"), Lines()) << "a cycle just goes";
  EXPECT_EQ(
      said_by(std::string(kClass) + "Set d = CreateObject(\"Scripting.Dictionary\")\nSet d(\"me\") = d\nd.Add 1, a"),
      (Lines{"-b"}))
      << "what only a cycle holds goes without a word";
}

struct BalanceCase {
  const char* what;
  std::string_view work;
};
constexpr BalanceCase kBalanced[] = {
    {"texts", "s = String(1000, \"x\") : s = s & s & \"y\" : s = Empty"},
    {"arrays", "ReDim x(100) : ReDim Preserve x(200) : y = x : y(1) = Array(1, \"t\") : x = Empty : y = Empty"},
    {"an element by reference", "ReDim x(3) : x(1) = \"t\" : Change x(1) : x = Empty"},
    {"objects", "Set o = New C : Set o.P = New C : o.P.P = Array(1, 2) : Set o = Nothing"},
    {"errors in the middle",
     "ReDim x(2) : Set o = New C : Fail x, New C : Fail Array(New C), 1 : Set o = Nothing : x = Empty"},
    {"For Each left early", "For Each e In Array(New C, 2) : Exit For : Next : e = Empty"},
    {"For Each left with the procedure", "Leave Array(New C, 2)"},
    {"dynamic code", "Execute \"t = 5 : t = Empty\" : t = Eval(\"Array(New C)\") : t = Empty"},
    {"an object that comes back from Class_Terminate", "Set z = New Z1 : Set z = Nothing : Set kept = Nothing"},
};

// What a script lets go of is freed at once and accounted for exactly.
TEST(Engine, NothingStaysBehind) {
  for (const BalanceCase& c : kBalanced) {
    Engine engine;
    ASSERT_FALSE(engine.add_code(
        "Class C\nPublic P\nEnd Class\nClass Z1\nSub Class_Terminate\nSet kept = Me\nEnd Sub\nEnd Class\nDim kept\n"
        "Sub Change(v)\nv = v & \"more\"\nEnd Sub\nSub Fail(a, b)\nDim l : Set l = New C\nx = 1 / 0\nEnd Sub\n"
        "Sub Leave(a)\nFor Each e In a\nWith e\nExit Sub\nEnd With\nNext\nEnd Sub\n"));
    const std::string work = "On Error Resume Next\n" + std::string(c.work);
    ASSERT_FALSE(engine.add_code(work)) << c.what;
    const std::size_t before = engine.heap().bytes();
    ASSERT_FALSE(engine.add_code(work)) << c.what;
    // A program's texts stay with it; the same program takes the same again.
    const std::size_t once = engine.heap().bytes() - before;
    ASSERT_FALSE(engine.add_code(work)) << c.what;
    EXPECT_EQ(engine.heap().bytes() - before, 2 * once) << c.what;
    EXPECT_LT(once, 2000U) << c.what;
  }
}

TEST(Engine, CallsOfProceduresDoNotNestOnTheThreadsStack) {
  Engine engine;
  std::vector<std::uintptr_t> places;
  engine.define("Here", [&places](Engine&, std::span<const Value>) {
    const char local = 0;
    places.push_back(reinterpret_cast<std::uintptr_t>(&local));
    return Value();
  });
  ASSERT_FALSE(engine.add_code("Sub s(n)\nIf n = 0 Or n = 5000 Then Here\nIf n > 0 Then s n - 1\nEnd Sub\ns 5000"));
  ASSERT_EQ(places.size(), 2U);
  EXPECT_EQ(places[0], places[1]);
}

// The same script is stopped at the same place on every machine.
TEST(Engine, StepsAreCountedTheSameEachTime) {
  const auto turns = [] {
    Engine engine;
    engine.charge_steps(kMaxSteps - 100'000);
    int count = 0;
    engine.define("Turn", [&count](Engine&, std::span<const Value>) {
      ++count;
      return Value();
    });
    EXPECT_TRUE(
        engine.add_code("Do\nn = n + 1\nIf n Mod 3 = 0 Then s = s & \"x\"\nf n\nTurn\nLoop\n"
                        "Sub f(v)\nOn Error Resume Next\nv = v + 1 / (v Mod 2)\nEnd Sub"));
    return count;
  };
  EXPECT_GT(turns(), 10);
  EXPECT_EQ(turns(), turns());
}

TEST(Engine, TwoEnginesShareNothing) {
  Engine one;
  Engine two;
  ASSERT_FALSE(one.add_code("x = 1\nFunction f\nf = x\nEnd Function"));
  ASSERT_FALSE(two.add_code("Function f\nf = IsEmpty(x)\nEnd Function"));
  Value result;
  ASSERT_FALSE(two.run("f", result));
  EXPECT_EQ(two.as_text(result), "True");
}

}  // namespace
}  // namespace pv::vbscript
