#include "vbscript/err_object.h"

#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/heap.h"
#include "vbscript/machine.h"

namespace pv::vbscript {
namespace {

// Numbers of an Automation error that wrap one of VBScript's.
constexpr std::uint32_t kControlFacility = 0x800A0000;

ErrState& err(Engine& engine) {
  return engine.machine().err();
}

std::string text(Engine& engine, const Value& value) {
  TextStorage storage;
  return std::string(text_of(engine, value, storage));
}

Value clear(Engine& engine, Object&, std::span<const Value>) {
  err(engine).clear();
  return {};
}

Value get_description(Engine& engine, Object&, std::span<const Value>) {
  return engine.heap().text(err(engine).description);
}

Value let_description(Engine& engine, Object&, std::span<const Value> arguments) {
  err(engine).description = text(engine, arguments[0]);
  return {};
}

Value get_help_context(Engine& engine, Object&, std::span<const Value>) {
  return Value::of_long(err(engine).help_context);
}

Value let_help_context(Engine& engine, Object&, std::span<const Value> arguments) {
  err(engine).help_context = to_long(engine, arguments[0]);
  return {};
}

Value get_help_file(Engine& engine, Object&, std::span<const Value>) {
  return engine.heap().text(err(engine).help_file);
}

Value let_help_file(Engine& engine, Object&, std::span<const Value> arguments) {
  err(engine).help_file = text(engine, arguments[0]);
  return {};
}

Value get_number(Engine& engine, Object&, std::span<const Value>) {
  return Value::of_long(err(engine).number);
}

Value let_number(Engine& engine, Object&, std::span<const Value> arguments) {
  err(engine).number = to_long(engine, arguments[0]);
  return {};
}

Value get_source(Engine& engine, Object&, std::span<const Value>) {
  return engine.heap().text(err(engine).source);
}

Value let_source(Engine& engine, Object&, std::span<const Value> arguments) {
  err(engine).source = text(engine, arguments[0]);
  return {};
}

// What is omitted is what Err holds already, as documented.
RuntimeError error_of(Engine& engine, std::span<const Value> arguments) {
  ErrState& state = err(engine);
  RuntimeError error;
  error.number = to_long(engine, arguments[0]);
  if ((static_cast<std::uint32_t>(error.number) & 0xFFFF0000) == kControlFacility) error.number &= 0xFFFF;
  if (error.number == 0 || error.number > 0xFFFF) raise(ErrorCode::kInvalidCall, "raise");
  const auto given = [&](std::size_t at) { return at < arguments.size() && !arguments[at].is_missing(); };
  if (given(1)) {
    error.source = text(engine, arguments[1]);
  } else if (!state.source.empty()) {
    error.source = state.source;
  }
  if (given(2)) {
    error.description = text(engine, arguments[2]);
  } else {
    error.description = state.description.empty() ? runtime_error_text(error.number) : state.description;
  }
  if (given(3)) state.help_file = text(engine, arguments[3]);
  if (given(4)) state.help_context = to_long(engine, arguments[4]);
  return error;
}

Value raise_error(Engine& engine, Object&, std::span<const Value> arguments) {
  throw error_of(engine, arguments);
}

constexpr NativeMember kMembers[] = {
    {"clear", Access::kGet, 0, 0, clear},
    {"description", Access::kGet, 0, 0, get_description},
    {"description", Access::kLet, 0, 0, let_description},
    {"helpcontext", Access::kGet, 0, 0, get_help_context},
    {"helpcontext", Access::kLet, 0, 0, let_help_context},
    {"helpfile", Access::kGet, 0, 0, get_help_file},
    {"helpfile", Access::kLet, 0, 0, let_help_file},
    {"number", Access::kGet, 0, 0, get_number},
    {"number", Access::kLet, 0, 0, let_number},
    {"raise", Access::kGet, 1, 5, raise_error},
    {"source", Access::kGet, 0, 0, get_source},
    {"source", Access::kLet, 0, 0, let_source},
};
constexpr NativeClass kErrClass{"Object", kMembers, "number"};

}  // namespace

void ErrState::clear() {
  number = 0;
  description.clear();
  source.clear();
  help_file.clear();
  help_context = 0;
}

// The help is set by Err.Raise alone, before it throws.
void ErrState::take(RuntimeError& error) {
  number = error.number;
  description = std::move(error.description);
  source = std::move(error.source);
}

Object* new_err_object(Engine& engine) {
  return new NativeObject(engine.heap(), kErrClass);
}

}  // namespace pv::vbscript
