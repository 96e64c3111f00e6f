// A VBScript engine: one program, its variables and objects. It computes and nothing else: no file, process or network
// is within a script's reach.
//
// Used by one thread at a time; any number of engines at once. Creating one is cheap (microseconds): a host makes one
// for every run. Program texts and all texts of a script are bytes, Windows-1252 where a character's code matters.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "vbscript/heap.h"
#include "vbscript/random.h"
#include "vbscript/script_error.h"
#include "vbscript/value.h"

namespace pv::vbscript {

class Engine;
class Machine;

// A procedure of the host that scripts can call; it may raise.
using HostFunction = std::function<Value(Engine& engine, std::span<const Value> arguments)>;

class Engine {
 public:
  Engine();
  ~Engine();  // releases the script's objects; Class_Terminate runs within what is left of the limits
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // Offers a host procedure under `name`. Before add_code.
  void define(std::string_view name, HostFunction function);

  // Compiles the program, adds its procedures, classes and variables to those there are, and runs the code outside
  // procedures. An error: nothing of a program that does not compile is added; what ran before a run-time error stays.
  std::optional<ScriptError> add_code(std::string_view program);

  // Compiles without running: for checking scripts.
  static std::optional<ScriptError> check(std::string_view program);

  // Calls a procedure (any case) without arguments. `result` is what a function gave, Empty for a Sub. No procedure of
  // that name: run-time error 13, as a VBScript host says of a call to what is none.
  std::optional<ScriptError> run(std::string_view procedure, Value& result);

  // For hosts: a value by VBScript's own conversion; nullopt where CInt or CStr raise an error.
  std::optional<std::int16_t> as_integer(const Value& value);
  std::optional<std::string> as_text(const Value& value);

  // For built-ins, operators and objects.
  Heap& heap() { return heap_; }
  Machine& machine() { return *machine_; }
  // Counts work on long texts and arrays towards the time limit; raises the fatal error beyond it.
  void charge_steps(std::int64_t steps);

  RandomState random;

 private:
  Heap heap_;  // outlives the machine, whose values lie on it
  std::unique_ptr<Machine> machine_;
};

}  // namespace pv::vbscript
