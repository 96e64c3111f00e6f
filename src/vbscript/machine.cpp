// The machine's own state: names, global variables, what the engine asks of it.
#include "vbscript/machine.h"

#include <utility>

#include "vbscript/instance.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// Free places behind a program's variables, for what Execute adds while it runs.
constexpr std::size_t kSlack = 16;
constexpr std::size_t kFirstGlobals = 48;
// Numbers of far variables start here.
constexpr std::uint32_t kFar = std::uint32_t{1} << 24U;

}  // namespace

Machine::Machine(Engine& engine) : engine_(engine) {}

Machine::~Machine() {
  // One by one: a long chain would free itself recursively.
  std::unique_ptr<Frame> frame = std::move(first_frame_.callee);
  while (frame != nullptr) frame = std::move(frame->callee);
}

Value Machine::err_object() {
  if (!err_object_.is(Type::kObject)) err_object_ = Value::adopt(new_err_object(engine_));
  return err_object_;
}

void Machine::out_of_time() {
  steps_left_ = -1;
  throw RuntimeError{static_cast<std::int32_t>(0x80004004),
                     "Script execution time was exceeded. Script execution was terminated.",
                     "Microsoft VBScript runtime error", true};
}

std::uint32_t Machine::new_global() {
  if (near_count_ == near_.size() && frame_ == nullptr && near_.size() < kOperandIndices) {
    near_.resize(near_.empty() ? kFirstGlobals : std::min<std::size_t>(near_.size() * 2, kOperandIndices));
    globals_changed();  // bindings hold addresses
  }
  if (near_count_ < near_.size()) return static_cast<std::uint32_t>(near_count_++);
  heap().charge(sizeof(Value) * 2);
  far_.push_back(std::make_unique<Value>());
  return kFar + static_cast<std::uint32_t>(far_.size() - 1);
}

Value& Machine::global(std::uint32_t index) {
  return index < kFar ? near_[index] : *far_[index - kFar];
}

Value Machine::procedure_reference(const Code& code) {
  return Value::adopt(new ProcedureReference(*this, code));
}

void Machine::define(std::string_view name, HostFunction function) {
  Symbol* symbol = symbols_.intern(name);
  symbol->meaning = Meaning::kHostFunction;
  symbol->host_function = static_cast<std::uint32_t>(host_functions_.size());
  host_functions_.push_back(std::make_unique<HostFunction>(std::move(function)));
}

void Machine::add_code(std::string_view program) {
  units_.push_back(compile_program(*this, program, nullptr));
  const Code& main = *units_.back()->main;
  if (near_.size() < kOperandIndices && near_.size() - near_count_ < kSlack) {
    near_.resize(std::min<std::size_t>(near_count_ + kSlack, kOperandIndices));
    globals_changed();
  }
  run_main(main);
}

Value Machine::run_procedure(std::string_view name) {
  const Symbol* symbol = symbols_.find(name);
  if (symbol == nullptr || symbol->meaning != Meaning::kProcedure) raise(ErrorCode::kTypeMismatch, name);
  if (symbol->procedure->parameters != 0) raise(ErrorCode::kWrongArgumentCount, name);
  return run_main(*symbol->procedure);
}

// In the order of their coming into being, as a host lets go of a script.
void Machine::release_globals() {
  for (std::size_t i = 0; i < near_count_; ++i) {
    near_[i] = Value();
    if (heap().terminate_waiting()) run_terminators();
  }
  for (auto& variable : far_) {
    *variable = Value();
    if (heap().terminate_waiting()) run_terminators();
  }
}

}  // namespace pv::vbscript
