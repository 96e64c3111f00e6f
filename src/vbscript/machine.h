// The machine: the state of one engine's scripts, and what runs them.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "vbscript/bytecode.h"
#include "vbscript/compiler.h"
#include "vbscript/engine.h"
#include "vbscript/err_object.h"
#include "vbscript/limits.h"
#include "vbscript/object.h"
#include "vbscript/symbols.h"

namespace pv::vbscript {

class Instance;

// A call under way. Frames are kept for the next call of the same depth.
struct Frame {
  const Code* code = nullptr;
  const Instruction* next = nullptr;     // up to date whenever something else than the run loop looks at it
  const Instruction* charged = nullptr;  // steps are counted up to here
  Value* registers = nullptr;
  Value* destination = nullptr;  // nullptr: nobody wants the result
  Instance* self = nullptr;      // one reference
  bool wants_value = false;      // an object's default property goes to `destination`
  bool resume_next = false;
  std::uint8_t chunk = 0;
  Frame* home = nullptr;  // the procedure's frame; another one for Execute and Eval within it
  std::unique_ptr<DynamicScope> scope;
  std::unique_ptr<Unit> unit;  // of Execute and Eval
  Frame* caller = nullptr;
  std::unique_ptr<Frame> callee;
};

class Machine {
 public:
  explicit Machine(Engine& engine);
  ~Machine();

  Engine& engine() { return engine_; }
  Heap& heap() { return engine_.heap(); }
  SymbolTable& symbols() { return symbols_; }
  ErrState& err() { return err_; }
  Value err_object();  // made when a script first mentions it

  void define(std::string_view name, HostFunction function);
  // Throw CompileError and RuntimeError.
  void add_code(std::string_view program);
  void compile_only(std::string_view program) { units_.push_back(compile_program(*this, program, nullptr)); }
  Value run_procedure(std::string_view name);
  // Lets go of the script's variables, which runs Class_Terminate.
  void release_globals();

  void charge_steps(std::int64_t steps) {
    if ((steps_left_ -= steps) < 0) out_of_time();
  }
  [[noreturn]] void out_of_time();

  // For the compiler.
  std::uint32_t new_global();
  Value& global(std::uint32_t index);
  static bool is_near(std::uint32_t index) { return index < kOperandIndices; }
  std::uint32_t next_stamp() { return ++stamp_; }
  void globals_changed() { ++globals_version_; }
  // What a variable must hold that was used under a procedure's name before there was the procedure.
  Value procedure_reference(const Code& code);

  // A script's procedure called from C++: default properties, Class_Terminate. The last argument of a property Let or
  // Set is the new value. Raises 28 beyond kMaxNestedRuns.
  Value call(const Code& code, Instance* self, std::span<const Value> arguments);

  // Where the error that goes to the host came up.
  Position error_position() const { return error_at_; }

 private:
  struct Chunk {
    std::unique_ptr<Value[]> values;
    std::size_t size = 0;
  };
  struct Nested {  // counts runs within one another
    explicit Nested(Machine& machine);
    ~Nested() { --machine.nested_runs_; }
    Machine& machine;
  };

  // machine_run.cpp
  void execute(const Frame* until);
  void run(Frame* until);

  // machine_calls.cpp
  Frame* enter(const Code& code, Instance* self, Value* window, std::size_t arguments);
  Frame* push(const Code& code, Instance* self, Value* registers, std::uint8_t chunk);
  void prepare_parameters(const Code& code, Value* registers, std::size_t arguments);
  void bind_implicit(const Code& code, Value* registers);
  void find_bindings(const Code& code);
  void bind_outer(const Code& code, Frame& frame);
  Value* room_for(Value* window, std::size_t arguments, std::size_t registers, std::uint8_t& chunk);
  void leave();  // the topmost frame, without its result
  Frame* leave_with_result();
  Value* free_registers();
  void run_terminators();
  void terminate(Instance& instance);
  void clear_window(Value* window, std::size_t count);
  std::span<const Value> resolve_window(Value* window, std::size_t count);
  Value run_main(const Code& code);
  void call_procedure(Frame& frame, const Instruction& call, const Instruction& data, Value* bases[]);
  void call_method(Frame& frame, const Instruction& call, const Instruction& data, Value* bases[]);
  void call_host(Frame& frame, const Instruction& call, const Instruction& data, Value* bases[]);
  void charge_result(const Value& result);
  void call_builtin(Frame& frame, const Instruction& call, const Instruction& data, Value* bases[]);
  void call_builtin1(Frame& frame, const Instruction& call, Value* bases[]);
  void start_call(const Code& code, Instance* self, Value* window, std::size_t arguments, Value* destination,
                  std::uint8_t flags);

  // machine_values.cpp
  static Value& at(Value* const bases[], Operand operand) {
    return bases[static_cast<std::size_t>(kind_of(operand))][index_of(operand)];
  }
  void store(Value& variable, Value&& value);  // Let: the value is no object
  void assign(Value& target, Value&& value);
  void let(Value& variable, const Value& value);
  void set(Value& variable, const Value& value, std::string_view name);
  void deliver(Value& destination, Value&& value, std::uint8_t flags);
  Value binary(Op op, const Value& left, const Value& right);
  void binary_into(Op op, Value& into, const Value& left, const Value& right);
  void concatenate_into(Value& into, Value& left, const Value& right);
  void concatenate_many(Value& into, const Value& first, Value* parts, std::size_t count);
  bool compares(Op relation, const Value& left, const Value& right);
  bool is_true(const Value& value);
  std::string operand_name(const Code& code, Operand operand) const;

  // machine_arrays.cpp
  Value& element(Value& variable, std::span<const Value> indices, Value& hold);
  Value element_value(const Value& array, std::span<const Value> indices);  // `array` is the caller's own
  void own_array(Value& variable);                                          // no longer shared
  Value copy_array(Array& array);
  void dim_array(Value& variable, const Value* bounds, std::size_t count);
  void redim(Value& variable, const Value* bounds, std::size_t count, bool preserve);
  void erase(Value& variable);
  void index_single(Frame& frame, const Instruction& instruction, Value* bases[]);
  void index_many(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]);
  void index_store(Frame& frame, const Instruction& instruction, Value* bases[]);
  void index_store_many(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]);
  void element_reference(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[],
                         Value* lock);
  void store_default(Value& subject, Value* window, std::size_t count, bool set, std::string_view name);
  void call_default(Object& object, Value* window, std::size_t count, Value* destination, std::uint8_t flags);

  // machine_members.cpp
  Object& subject_of(const Value& subject, const Code& code, Operand operand);
  void member(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]);
  void member_store(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]);
  void use_field(Value& field, Value* window, std::size_t count, Value& destination, std::uint8_t flags);
  void store_in_field(Value& field, Value* window, std::size_t count, bool set, std::string_view name);
  void name_member(RuntimeError& error, const Code& code, Operand subject, const Symbol& name) const;
  void member_element(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]);
  void new_instance(Frame& frame, const Instruction& instruction, Value* bases[]);
  void with(Frame& frame, const Instruction& instruction, Value* bases[]);
  [[noreturn]] void no_such_member(const Code& code, Operand subject, std::string_view name);

  // machine_loops.cpp
  bool for_prepare(Value& counter, const Value& from, Value* window);
  bool for_next(Value& counter, Value* window);
  void for_each_prepare(Frame& frame, const Instruction& instruction, Value* bases[]);
  bool for_each_next(Value& variable, Value* window);

  // machine_dynamic.cpp
  void execute_text(Frame& frame, const Instruction& instruction, Value* bases[]);
  void eval_text(Frame& frame, const Instruction& instruction, Value* bases[]);
  void run_unit(std::unique_ptr<Unit> unit, Frame& frame, bool within, Value* destination, std::uint8_t flags);
  void get_ref(const Instruction& instruction, Value* bases[]);
  void look_up(Frame& frame, const Instruction& instruction, Value* bases[]);
  Value* global_by_name(Symbol& symbol);

  // machine_errors.cpp
  bool recover(RuntimeError& error, const Frame* until);
  void name_operands(RuntimeError& error, const Frame& frame) const;
  const Value& operand_value(const Frame& frame, Operand operand) const;
  std::string text_shown(const Frame& frame, Operand operand) const;
  std::string spelling_of(const Builtin& builtin) const;
  Position position_of(const Frame& frame) const;

  Engine& engine_;
  SymbolTable symbols_;
  ErrState err_;
  Value err_object_;
  std::vector<std::unique_ptr<Unit>> units_;
  std::vector<std::unique_ptr<HostFunction>> host_functions_;

  // Variables outside procedures. The near ones are operands and lie in one block, which moves only while nothing runs;
  // those that come up while something runs and the block is full are far.
  std::vector<Value> near_;
  std::size_t near_count_ = 0;
  std::vector<std::unique_ptr<Value>> far_;
  std::uint32_t globals_version_ = 1;

  // Every slot above the topmost frame's registers is Empty.
  std::vector<Chunk> chunks_;
  std::size_t stack_bytes_ = 0;
  Frame first_frame_;
  Frame* frame_ = nullptr;  // the topmost, nullptr when nothing runs
  int depth_ = 0;
  int nested_runs_ = 0;
  std::int64_t steps_left_ = kMaxSteps;
  std::uint32_t stamp_ = 0;
  Position error_at_;
  bool error_placed_ = false;
};

}  // namespace pv::vbscript
