// Program texts that come up while a program runs: Execute, ExecuteGlobal, Eval; and names looked up by then.
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/instance.h"
#include "vbscript/machine.h"
#include "vbscript/random.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

constexpr std::int64_t kCompileSteps = 300;  // for any text
constexpr std::size_t kUnitBytes = 4096;     // what a kept one counts for, besides ten bytes a byte of source
constexpr char kCompileSource[] = "Microsoft VBScript compilation error";

template <typename Compile>
std::unique_ptr<Unit> compile_now(Compile compile) {
  try {
    return compile();
  } catch (const CompileError& failed) {
    throw RuntimeError{failed.number, std::string(compile_error_text(failed.number)), kCompileSource};
  }
}

}  // namespace

// The variable of that name outside procedures, or the place of an object that calls the procedure of that name.
Value* Machine::global_by_name(Symbol& symbol) {
  if (symbol.global != kNoGlobal && symbol.meaning != Meaning::kNone) return &global(symbol.global);
  if (symbol.meaning != Meaning::kProcedure) return nullptr;
  symbol.global = new_global();
  global(symbol.global) = procedure_reference(*symbol.procedure);
  return &global(symbol.global);
}

void Machine::run_unit(std::unique_ptr<Unit> unit, Frame& frame, bool within, Value* destination, std::uint8_t flags) {
  if (!unit->procedures.empty() || !unit->classes.empty()) heap().charge(kUnitBytes * (1 + unit->procedures.size()));
  Frame& home = *frame.home;
  Instance* self = within ? frame.self : nullptr;
  const Code& code = *unit->main;
  Frame* made = enter(code, self, free_registers(), 0);
  made->unit = std::move(unit);
  made->destination = destination;
  made->wants_value = (flags & kWantValue) != 0;
  if (!within) return;
  made->home = &home;
  bind_outer(code, *made);
}

void Machine::execute_text(Frame& frame, const Instruction& instruction, Value* bases[]) {
  const Value text = to_text(engine_, at(bases, instruction.b).resolved());
  charge_steps(kCompileSteps + static_cast<std::int64_t>(text.view().size()) * 4);
  Frame& home = *frame.home;
  const bool within = instruction.extra == 0 && !home.code->is_script_level;
  if (within && home.scope == nullptr) home.scope = std::make_unique<DynamicScope>();
  const Surroundings outer{home.code, home.scope.get(), home.registers};
  auto unit = compile_now([&] { return compile_program(*this, text.view(), within ? &outer : nullptr); });
  run_unit(std::move(unit), frame, within, nullptr, 0);
}

void Machine::eval_text(Frame& frame, const Instruction& instruction, Value* bases[]) {
  const Value text = to_text(engine_, at(bases, instruction.b).resolved());
  charge_steps(kCompileSteps + static_cast<std::int64_t>(text.view().size()) * 4);
  Frame& home = *frame.home;
  const bool within = !home.code->is_script_level;
  if (within && home.scope == nullptr) home.scope = std::make_unique<DynamicScope>();
  const Surroundings outer{home.code, home.scope.get(), home.registers};
  auto unit = compile_now([&] { return compile_expression(*this, text.view(), within ? &outer : nullptr); });
  const auto flags = static_cast<std::uint8_t>(instruction.extra);
  Value* destination = (flags & kDiscard) != 0 ? nullptr : &at(bases, instruction.a);
  run_unit(std::move(unit), frame, within, destination, flags);
}

void Machine::get_ref(const Instruction& instruction, Value* bases[]) {
  const Value name = to_text(engine_, at(bases, instruction.b).resolved());
  const Symbol* symbol = symbols_.find(name.view());
  if (symbol == nullptr || symbol->meaning != Meaning::kProcedure) raise(ErrorCode::kInvalidCall, "GetRef");
  deliver(at(bases, instruction.a), procedure_reference(*symbol->procedure),
          static_cast<std::uint8_t>(instruction.extra));
}

void Machine::look_up(Frame& frame, const Instruction& instruction, Value* bases[]) {
  Symbol& symbol = *frame.code->names[instruction.index()];
  Value* found = nullptr;
  if (const DynamicScope* scope = frame.home->scope.get(); scope != nullptr) {
    for (const DynamicScope::Variable& variable : scope->variables) {
      if (variable.symbol == &symbol) found = variable.value.get();
    }
  }
  if (found == nullptr) found = global_by_name(symbol);
  if (found == nullptr) raise(ErrorCode::kVariableUndefined, symbol.spelling);
  at(bases, instruction.a) = Value::reference(*found);
}

}  // namespace pv::vbscript
