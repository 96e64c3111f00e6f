// The same decision and loops in Lua, as a yardstick: option PV_BENCH_LUA.
#include <benchmark/benchmark.h>

#include <lua.hpp>
#include <stdexcept>

#include "ratios.h"

namespace pv::bench {
namespace {

constexpr char kDecision[] = R"(
local result_data = "SCRIPT"
function PV_GetResultData()
  return result_data
end
function CriteriaMet(value, condition)
  return value ~= 0
end
function PV_Execute()
  local filter_result = 0

-- Offers from unknown senders, unless they are for the sales people.
local score, subject, sender
subject = "Cheap offers for you, today only"
sender = "offers@mail.example.com"
score = 0
if CriteriaMet(3, "free") then score = score + 10 end
if CriteriaMet(0, "") and not CriteriaMet(1, "bob") then score = score + 5 end
if CriteriaMet(2, "offer") or CriteriaMet(0, "win") then
  score = score + 3
end
if string.find(string.lower(subject), "offer", 1, true) then score = score + 2 end
if string.sub(string.lower(sender), -12) == "@example.com" then score = score - 20 end
if string.sub(sender, 1, 7) == "offers@" then
  score = score + 1
  result_data = "offer from " .. sender .. ", " .. score .. " points"
end
if score >= 10 and CriteriaMet(1, "") then
  filter_result = 1
else
  filter_result = 0
end

  return filter_result
end
)";

class State {
 public:
  State() : lua_(luaL_newstate()) { luaL_openlibs(lua_); }
  ~State() { lua_close(lua_); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void run(const char* program) {
    if (luaL_dostring(lua_, program) != LUA_OK) throw std::logic_error(lua_tostring(lua_, -1));
  }
  lua_State* get() { return lua_; }

 private:
  lua_State* lua_;
};

void LuaDecision(benchmark::State& state) {
  for (auto _ : state) {
    State lua;
    lua.run(kDecision);
    lua_getglobal(lua.get(), "PV_Execute");
    if (lua_pcall(lua.get(), 0, 1, 0) != LUA_OK || lua_tointeger(lua.get(), -1) != 1) {
      throw std::logic_error("the decision went wrong");
    }
  }
}

void run(benchmark::State& state, const char* program) {
  for (auto _ : state) State().run(program);
}

void LuaAdditions(benchmark::State& state) {
  run(state, "local x = 0\nfor i = 1, 1000000 do x = x + i end");
}

void LuaTextBuilding(benchmark::State& state) {
  run(state, "local s = ''\nfor i = 1, 20000 do s = s .. 'x' end");
}

void LuaDictionary(benchmark::State& state) {
  run(state, "local d = {}\nfor i = 0, 99999 do local k = 'k' .. (i % 1000) d[k] = (d[k] or 0) + 1 end");
}

void LuaCalls(benchmark::State& state) {
  run(state,
      "local function fib(n) if n < 2 then return n else return fib(n - 1) + fib(n - 2) end end\nlocal x = fib(22)");
}

void LuaArray(benchmark::State& state) {
  run(state,
      "local a = {}\nfor i = 0, 999 do a[i] = 0 end\nfor j = 1, 100 do for i = 0, 999 do a[i] = a[i] + i end end");
}

BENCHMARK(LuaDecision);
BENCHMARK(LuaAdditions);
BENCHMARK(LuaTextBuilding);
BENCHMARK(LuaDictionary);
BENCHMARK(LuaCalls);
BENCHMARK(LuaArray);

const Ratio kDecisions("a script's decision, to Lua's", "ScriptDecision", "LuaDecision");
const Ratio kAdditions("a million additions, to Lua's", "ScriptAdditions", "LuaAdditions");
const Ratio kTexts("building a text, to Lua's", "ScriptTextBuilding", "LuaTextBuilding");
const Ratio kDictionaries("a dictionary, to Lua's table", "ScriptDictionary", "LuaDictionary");
const Ratio kCalls("calls, to Lua's", "ScriptCalls", "LuaCalls");
const Ratio kArrays("array elements, to Lua's", "ScriptArray", "LuaArray");

}  // namespace
}  // namespace pv::bench
