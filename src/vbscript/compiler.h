// Program text to bytecode.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "vbscript/bytecode.h"

namespace pv::vbscript {

class Machine;

// Variables that Execute made in a running procedure. Their addresses do not change.
struct DynamicScope {
  struct Variable {
    Symbol* symbol;
    std::unique_ptr<Value> value;
  };
  std::vector<Variable> variables;
};

// The procedure in which an Execute or Eval stands.
struct Surroundings {
  const Code* code;
  DynamicScope* scope;
  Value* registers;
};

// Both throw CompileError, and have then changed nothing. `outer` is nullptr outside procedures. Symbols get their new
// meanings here; the units must live as long as the machine when they hold procedures or classes.
std::unique_ptr<Unit> compile_program(Machine& machine, std::string_view source, const Surroundings* outer);
std::unique_ptr<Unit> compile_expression(Machine& machine, std::string_view source, const Surroundings* outer);

}  // namespace pv::vbscript
