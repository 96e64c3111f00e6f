#include "vbscript/engine.h"

#include <new>
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/machine.h"

namespace pv::vbscript {
namespace {

constexpr std::string_view kCompileSource = "Microsoft VBScript compilation error";

ScriptError from_compile_error(const CompileError& error) {
  return {true, error.number, std::string(compile_error_text(error.number)), std::string(kCompileSource), error.at};
}

template <typename Action>
std::optional<ScriptError> guarded(Machine& machine, Action action) {
  try {
    action();
    return std::nullopt;
  } catch (const CompileError& error) {
    return from_compile_error(error);
  } catch (const RuntimeError& error) {
    return ScriptError{false, error.number, error.description, error.source, machine.error_position()};
  } catch (const std::bad_alloc&) {
    return from_compile_error({1001, {}});
  }
}

}  // namespace

Engine::Engine() : machine_(std::make_unique<Machine>(*this)) {}

Engine::~Engine() {
  try {
    machine_->release_globals();
  } catch (const RuntimeError&) {
    // The limits are reached: what is left goes without its Class_Terminate.
  } catch (const std::bad_alloc&) {
  }
  heap_.break_cycles();
}

void Engine::define(std::string_view name, HostFunction function) {
  machine_->define(name, std::move(function));
}

std::optional<ScriptError> Engine::add_code(std::string_view program) {
  return guarded(*machine_, [&] { machine_->add_code(program); });
}

std::optional<ScriptError> Engine::check(std::string_view program) {
  Engine engine;
  return guarded(*engine.machine_, [&] { engine.machine_->compile_only(program); });
}

std::optional<ScriptError> Engine::run(std::string_view procedure, Value& result) {
  return guarded(*machine_, [&] { result = machine_->run_procedure(procedure); });
}

std::optional<std::int16_t> Engine::as_integer(const Value& value) {
  std::optional<std::int16_t> integer;
  guarded(*machine_, [&] { integer = to_integer(*this, value); });
  return integer;
}

std::optional<std::string> Engine::as_text(const Value& value) {
  std::optional<std::string> text;
  guarded(*machine_, [&] {
    TextStorage storage;
    text = std::string(text_of(*this, value, storage));
  });
  return text;
}

void Engine::charge_steps(std::int64_t steps) {
  machine_->charge_steps(steps);
}

}  // namespace pv::vbscript
