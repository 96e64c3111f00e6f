// The script engine: a decision as the agent makes it (engine, program, verdict, all anew), and hot loops.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "vbscript/engine.h"

namespace pv::bench {
namespace {

using vbscript::Engine;
using vbscript::Value;

// Twenty lines as an administrator writes them, six criteria, with what the agent puts around it.
constexpr std::string_view kDecision = R"(Dim PVResultData
PVResultData = "SCRIPT"
Function PV_GetResultData()
PV_GetResultData=PVResultData
End Function
Function CriteriaMet(Value,Condition)
	CriteriaMet=(Value<>0)
End Function
Function PV_Execute
	FilterResult=0

' Offers from unknown senders, unless they are for the sales people.
Dim score, subject, sender
subject = "Cheap offers for you, today only"
sender = "offers@mail.example.com"
score = 0
If CriteriaMet(3,"free") Then score = score + 10
If CriteriaMet(0,"") And Not CriteriaMet(1,"bob") Then score = score + 5
If CriteriaMet(2,"offer") Or CriteriaMet(0,"win") Then
  score = score + 3
End If
If InStr(1, subject, "offer", vbTextCompare) > 0 Then score = score + 2
If Right(LCase(sender), 12) = "@example.com" Then score = score - 20
If Left(sender, 7) = "offers@" Then
  score = score + 1
  PVResultData = "offer from " & sender & ", " & score & " points"
End If
Select Case True
  Case score >= 10 And CriteriaMet(1,"") : FilterResult = 1
  Case Else : FilterResult = 0
End Select

PV_Execute = FilterResult
End Function
)";

void ScriptDecision(benchmark::State& state) {
  for (auto _ : state) {
    Engine engine;
    Value verdict;
    if (engine.add_code(kDecision) || engine.run("PV_Execute", verdict) || engine.as_integer(verdict) != 1) {
      throw std::logic_error("the decision went wrong");
    }
  }
}

void run(benchmark::State& state, std::string_view program) {
  for (auto _ : state) {
    Engine engine;
    if (engine.add_code(program)) throw std::logic_error("the loop went wrong");
  }
}

void ScriptAdditions(benchmark::State& state) {
  run(state, "Dim i, x\nx = 0\nFor i = 1 To 1000000\nx = x + i\nNext\n");
}

void ScriptTextBuilding(benchmark::State& state) {
  run(state, "Dim i, s\nFor i = 1 To 20000\ns = s & \"x\"\nNext\n");
}

void ScriptDictionary(benchmark::State& state) {
  run(state,
      "Dim i, d, k\nSet d = CreateObject(\"Scripting.Dictionary\")\nFor i = 0 To 99999\nk = \"k\" & (i Mod 1000)\n"
      "d(k) = d(k) + 1\nNext\n");
}

void ScriptCalls(benchmark::State& state) {
  run(state,
      "Function Fib(n)\nIf n < 2 Then\nFib = n\nElse\nFib = Fib(n - 1) + Fib(n - 2)\nEnd If\nEnd Function\n"
      "x = Fib(22)\n");
}

void ScriptArray(benchmark::State& state) {
  run(state, "Dim a(999), i, j, s\nFor j = 1 To 100\nFor i = 0 To 999\na(i) = a(i) + i\nNext\nNext\n");
}

BENCHMARK(ScriptDecision);
BENCHMARK(ScriptAdditions);
BENCHMARK(ScriptTextBuilding);
BENCHMARK(ScriptDictionary);
BENCHMARK(ScriptCalls);
BENCHMARK(ScriptArray);

}  // namespace
}  // namespace pv::bench
