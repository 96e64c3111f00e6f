// Frames: entering and leaving procedures, calls from C++, built-ins and host functions.
#include <algorithm>
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/instance.h"
#include "vbscript/machine.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// Behind every frame's registers there is room for the arguments of a default property.
constexpr std::size_t kSpareValues = 4;
constexpr std::size_t kFirstChunkValues = 192;
constexpr std::size_t kLargestChunkValues = 16384;
constexpr std::size_t kMaxStackBytes = std::size_t{32} << 20U;
constexpr std::size_t kMaxChunks = 250;

std::string_view name_of(const Code& code) {
  return code.name == nullptr ? std::string_view() : code.name->spelling;
}

}  // namespace

Machine::Nested::Nested(Machine& owner) : machine(owner) {
  if (machine.nested_runs_ >= kMaxNestedRuns) raise(ErrorCode::kOutOfStackSpace);
  ++machine.nested_runs_;
}

Value* Machine::free_registers() {
  if (frame_ != nullptr) return frame_->registers + frame_->code->registers;
  return chunks_.empty() ? nullptr : chunks_.front().values.get();
}

// Where `registers` registers fit that begin with the arguments in `window`: there, or in the next chunk of the stack,
// to which the arguments are moved.
Value* Machine::room_for(Value* window, std::size_t arguments, std::size_t registers, std::uint8_t& chunk) {
  const std::size_t current = frame_ == nullptr ? 0 : frame_->chunk;
  registers += kSpareValues;
  if (!chunks_.empty()) {
    const Chunk& here = chunks_[current];
    if (registers <= static_cast<std::size_t>(here.values.get() + here.size - window)) {
      chunk = static_cast<std::uint8_t>(current);
      return window;
    }
  }
  const std::size_t next = frame_ == nullptr ? 0 : current + 1;
  if (next >= chunks_.size() || chunks_[next].size < registers) {
    const std::size_t usual =
        chunks_.empty() ? kFirstChunkValues : std::min(chunks_[current].size * 4, kLargestChunkValues);
    const std::size_t size = std::max(usual, registers);
    if (next >= kMaxChunks || stack_bytes_ + size * sizeof(Value) > kMaxStackBytes) raise(ErrorCode::kOutOfStackSpace);
    Chunk made{std::make_unique<Value[]>(size), size};
    if (next < chunks_.size()) {
      stack_bytes_ -= chunks_[next].size * sizeof(Value);
      chunks_[next] = std::move(made);
    } else {
      chunks_.push_back(std::move(made));
    }
    stack_bytes_ += size * sizeof(Value);
  }
  Value* registers_there = chunks_[next].values.get();
  for (std::size_t i = 0; i < arguments; ++i) registers_there[i] = std::move(window[i]);
  chunk = static_cast<std::uint8_t>(next);
  return registers_there;
}

void Machine::find_bindings(const Code& code) {
  code.bindings.clear();
  code.bindings_version = globals_version_;
  for (const std::uint16_t variable : code.implicit_variables) {
    const Symbol& symbol = *code.variable_names[variable].symbol;
    if (symbol.meaning == Meaning::kProcedure && symbol.global == kNoGlobal) {
      global_by_name(*code.variable_names[variable].symbol);
    }
    if (symbol.global != kNoGlobal) code.bindings.push_back({variable, &global(symbol.global)});
  }
}

void Machine::prepare_parameters(const Code& code, Value* registers, std::size_t arguments) {
  for (std::size_t i = 0; i < arguments && i < code.by_value.size(); ++i) {
    if (code.by_value[i] == 0 || !registers[i].is(Type::kReference)) continue;
    Value copy = *registers[i].target();
    if (copy.is(Type::kArray) && (copy.array()->fixed || copy.array()->locks != 0)) copy = copy_array(*copy.array());
    registers[i] = std::move(copy);
  }
}

void Machine::bind_outer(const Code& code, Frame& frame) {
  Frame& home = *frame.home;
  for (const Code::OuterName& name : code.outer_names) {
    Value& outer = name.in_scope ? *home.scope->variables[name.index].value : home.registers[name.index];
    frame.registers[name.variable] = Value::reference(outer.resolved());
  }
}

// A frame whose registers begin with the arguments, as many as the procedure has parameters.
Frame* Machine::push(const Code& code, Instance* self, Value* registers, std::uint8_t chunk) {
  Frame* frame = &first_frame_;
  if (frame_ != nullptr) {
    if (frame_->callee == nullptr) frame_->callee = std::make_unique<Frame>();
    frame = frame_->callee.get();
  }
  frame->code = &code;
  frame->next = frame->charged = code.instructions.data();
  frame->registers = registers;
  frame->destination = nullptr;
  frame->self = self;
  if (self != nullptr) ++self->references;
  frame->wants_value = false;
  frame->resume_next = false;
  frame->chunk = chunk;
  frame->home = frame;
  frame->caller = frame_;
  frame_ = frame;
  ++depth_;
  if (!code.by_value.empty()) prepare_parameters(code, registers, code.parameters);
  if (!code.implicit_variables.empty()) {
    if (code.bindings_version != globals_version_) find_bindings(code);
    for (const Code::Binding& binding : code.bindings) {
      registers[binding.variable] = Value::reference(*binding.target);
    }
  }
  return frame;
}

// Calls with the arguments in `window`, which lies in the topmost frame or right behind it.
Frame* Machine::enter(const Code& code, Instance* self, Value* window, std::size_t arguments) {
  if (depth_ >= kMaxCallDepth) raise(ErrorCode::kOutOfStackSpace, name_of(code));
  Value* const end = frame_->registers + frame_->code->registers;
  for (Value* slot = window + arguments; slot < end; ++slot) slot->reset();
  std::uint8_t chunk = 0;
  Value* registers = room_for(window, arguments, code.registers, chunk);
  return push(code, self, registers, chunk);
}

void Machine::leave() {
  Frame& frame = *frame_;
  const std::size_t count = frame.code->registers;
  for (std::size_t i = 0; i < count; ++i) {
    frame.registers[i].reset();
  }
  if (frame.self != nullptr) Value::adopt(static_cast<Object*>(frame.self));
  frame.self = nullptr;
  frame_ = frame.caller;
  --depth_;
  if (frame.scope != nullptr) frame.scope.reset();
  if (frame.unit != nullptr) {
    // Its procedures may be called later; without any nobody needs it again.
    if (!frame.unit->procedures.empty() || !frame.unit->classes.empty()) units_.push_back(std::move(frame.unit));
    frame.unit.reset();
  }
}

// The caller's frame; nullptr when there is none.
Frame* Machine::leave_with_result() {
  const Code& code = *frame_->code;
  Value* destination = frame_->destination;
  const bool wants_value = frame_->wants_value;
  Value result;
  if (code.result != kNoOperand) result = std::move(frame_->registers[index_of(code.result)].resolved());
  leave();
  if (destination != nullptr) deliver(*destination, std::move(result), wants_value ? kWantValue : 0);
  return frame_;
}

Value Machine::call(const Code& code, Instance* self, std::span<const Value> arguments) {
  Nested nested(*this);
  if (arguments.size() != code.parameters) raise(ErrorCode::kWrongArgumentCount, code.name->spelling);
  if (depth_ >= kMaxCallDepth) raise(ErrorCode::kOutOfStackSpace, name_of(code));
  charge_steps(20);
  std::uint8_t chunk = 0;
  Value* registers = room_for(free_registers(), 0, code.registers, chunk);
  for (std::size_t i = 0; i < arguments.size(); ++i) registers[i] = arguments[i];
  Value result;
  Frame* until = frame_;
  try {
    push(code, self, registers, chunk)->destination = &result;
  } catch (...) {
    leave();
    throw;
  }
  run(until);
  return result;
}

Value Machine::run_main(const Code& code) {
  error_placed_ = false;
  error_at_ = {};
  return call(code, nullptr, {});
}

// The objects whose last reference went. What their procedures do wrong stays theirs. Those that are taken are out of
// the way of the runs within, which see to what these let go of.
void Machine::run_terminators() {
  while (heap().terminate_waiting() && nested_runs_ < kMaxNestedRuns) {
    Object* next = heap().take_waiting();
    while (next != nullptr) {
      const Value object = Value::adopt(next);
      next = next->next_waiting;
      try {
        terminate(*object.object()->instance());
      } catch (const RuntimeError& error) {
        if (error.fatal) {
          heap().put_back(next);
          throw;
        }
        error_placed_ = false;
      }
    }
  }
}

void Machine::terminate(Instance& instance) {
  instance.wants_terminate = false;
  charge_steps(10);
  call(*instance.script_class().terminate, &instance, {});
}

void Machine::clear_window(Value* window, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) window[i].reset();
}

// For who takes values and no references.
std::span<const Value> Machine::resolve_window(Value* window, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (window[i].is(Type::kReference)) window[i] = Value(*window[i].target());
  }
  return {window, count};
}

void Machine::start_call(const Code& code, Instance* self, Value* window, std::size_t arguments, Value* destination,
                         std::uint8_t flags) {
  if (arguments != code.parameters) raise(ErrorCode::kWrongArgumentCount, code.name->spelling);
  Frame* frame = enter(code, self, window, arguments);
  frame->destination = (flags & kDiscard) != 0 ? nullptr : destination;
  frame->wants_value = (flags & kWantValue) != 0;
}

void Machine::call_procedure(Frame& frame, const Instruction& call, const Instruction& data, Value* bases[]) {
  const Symbol& name = *frame.code->names[data.index()];
  const auto flags = static_cast<std::uint8_t>(data.extra);
  const Code& code = *name.procedure;
  // A Sub gives no value that an expression could take.
  if ((flags & kStatement) == 0 && !code.is_function()) raise(ErrorCode::kTypeMismatch, name.spelling);
  start_call(code, nullptr, &at(bases, call.c), data.a, &at(bases, call.a), flags);
}

void Machine::call_method(Frame& frame, const Instruction& call, const Instruction& data, Value* bases[]) {
  const Code& code = *frame.code->methods[data.index()];
  const auto flags = static_cast<std::uint8_t>(data.extra);
  if ((flags & kStatement) == 0 && !code.is_function()) raise(ErrorCode::kTypeMismatch, code.name->spelling);
  start_call(code, frame.self, &at(bases, call.c), data.a, &at(bases, call.a), flags);
}

void Machine::call_host(Frame& frame, const Instruction& call, const Instruction& data, Value* bases[]) {
  const Symbol& name = *frame.code->names[data.index()];
  const auto flags = static_cast<std::uint8_t>(data.extra);
  if (name.meaning == Meaning::kProcedure) {  // the script has one of its own since
    start_call(*name.procedure, nullptr, &at(bases, call.c), data.a, &at(bases, call.a), flags);
    return;
  }
  charge_steps(10);
  Value* window = &at(bases, call.c);
  Value result = (*host_functions_[name.host_function])(engine_, resolve_window(window, data.a));
  clear_window(window, data.a);
  deliver(at(bases, call.a), std::move(result), flags);
}

// What it costs to make a text, which nobody shares yet; who only looks at a long one charges for that itself.
void Machine::charge_result(const Value& result) {
  constexpr std::uint32_t kMadeBytesAStep = 16;
  if (result.is(Type::kString) && result.text()->references == 1) charge_steps(result.text()->length / kMadeBytesAStep);
}

void Machine::call_builtin(Frame& frame, const Instruction& call, const Instruction& data, Value* bases[]) {
  const Builtin& builtin = *frame.code->builtins[data.index()];
  Value* window = &at(bases, call.c);
  charge_steps(4);
  Value result = builtin.call(engine_, resolve_window(window, data.a));
  charge_result(result);
  clear_window(window, data.a);
  deliver(at(bases, call.a), std::move(result), static_cast<std::uint8_t>(data.extra));
}

void Machine::call_builtin1(Frame& frame, const Instruction& call, Value* bases[]) {
  const Builtin& builtin = *frame.code->builtins[call.c];
  Value& argument = at(bases, call.b);
  charge_steps(2);
  Value result = builtin.call(engine_, {&argument.resolved(), 1});
  charge_result(result);
  if ((call.extra & kConsumeFirst) != 0) argument = Value();
  deliver(at(bases, call.a), std::move(result), static_cast<std::uint8_t>(call.extra));
}

}  // namespace pv::vbscript
