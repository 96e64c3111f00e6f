// What the compiler makes of a program and the machine runs: instructions of eight bytes for a register machine.
//
// An operand is 16 bits: its kind in the lowest two, an index above. The machine keeps one base address a kind, so that
// an operand costs no branch. While a procedure is being compiled its temporaries are numbered from kFirstTemporary on,
// because how many variables it has shows only at its end; finishing it moves them behind the variables.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "vbscript/ast.h"
#include "vbscript/builtins.h"
#include "vbscript/symbols.h"
#include "vbscript/value.h"

namespace pv::vbscript {

using Operand = std::uint16_t;

enum class OperandKind : std::uint8_t {
  kRegister,
  kConstant,
  kGlobal,
  kField,  // of the instance whose method runs
};
inline constexpr unsigned kOperandKindBits = 2;
inline constexpr unsigned kOperandIndices = 1U << (16 - kOperandKindBits);
inline constexpr unsigned kFirstTemporary = kOperandIndices / 2;
inline constexpr Operand kNoOperand = 0xFFFF;  // a field that no class has: the compiler stops before

constexpr Operand operand(OperandKind kind, std::size_t index) {
  return static_cast<Operand>((index << kOperandKindBits) | static_cast<unsigned>(kind));
}
constexpr OperandKind kind_of(Operand operand) {
  return static_cast<OperandKind>(operand & ((1U << kOperandKindBits) - 1));
}
constexpr std::size_t index_of(Operand operand) {
  return static_cast<unsigned>(operand) >> kOperandKindBits;
}
// The register `count` places behind `first`.
constexpr Operand behind(Operand first, std::size_t count) {
  return static_cast<Operand>(first + (count << kOperandKindBits));
}

// `R` names an operand that is read, `W` one that is written, `w` the first register of a window of arguments.
enum class Op : std::uint8_t {
  kData,          // the second half of the instruction before: a number of arguments, bc a 32-bit index, extra flags
  kDataRegister,  // the same, but a is a register and b the number of arguments

  // Moving values. Writing to a variable that holds a reference writes to what it refers to.
  kLet,           // W a = R b, an object's default property
  kCopy,          // W a = R b as it is
  kSet,           // W a = the object R b; extra: UseFlags
  kRefer,         // register a becomes a reference to b
  kLoadConstant,  // W a = constant number bc
  kGlobal,        // register a becomes a reference to the far global number bc
  kLookUp,        // register a becomes a reference to the variable of name bc; error 500 when there is none
  kClear,         // register a is emptied
  kMe,            // W a = the instance

  kAdd,  // W a = R b op R c
  kSubtract,
  kMultiply,
  kDivide,
  kDivideWhole,
  kModulo,
  kPower,
  kConcatenate,
  kAnd,
  kOr,
  kXor,
  kEqv,
  kImp,
  kEqual,
  kNotEqual,
  kLess,
  kGreater,
  kLessEqual,
  kGreaterEqual,
  kIs,               // extra: UseFlags
  kConcatenateMany,  // W a = R b & w c & …, extra of them

  kNegate,  // W a = op R b
  kPlus,
  kNot,

  // Jumps: extra and c are a distance of 24 bits from the instruction behind.
  kJump,
  kLoop,  // backwards
  kJumpIfTrue,
  kJumpUnlessTrue,
  kJumpIfEqual,  // R a, R b; in the order of kEqual
  kJumpIfNotEqual,
  kJumpIfLess,
  kJumpIfGreater,
  kJumpIfLessEqual,
  kJumpIfGreaterEqual,
  kJumpUnlessEqual,
  kJumpUnlessNotEqual,
  kJumpUnlessLess,
  kJumpUnlessGreater,
  kJumpUnlessLessEqual,
  kJumpUnlessGreaterEqual,

  // A window's first register holds the limit, the second the step.
  kForPrepare,  // counter W a = R b, window c; kData: the distance to the end of the loop
  kForNext,     // counter a, window b, distance backwards
  // A window's first register holds what is visited, the second the index of the next one.
  kForEachPrepare,  // window a, R b; extra: UseFlags
  kForEachNext,     // W a, window b, distance backwards

  kWith,  // register a = the object R b; extra: UseFlags

  // Elements and members. Followed by kData (arguments, name, UseFlags) unless said otherwise.
  kIndex,            // W a = R b (R c); extra: UseFlags; no kData
  kIndexMany,        // W a = R b (w c)
  kElement,          // register a becomes a reference to element b (w c), or the default property's value
  kArgumentElement,  // the same for an argument: kDataRegister names the register that holds the array's lock
  kIndexStore,       // element or default property a (R b) = R c; extra: UseFlags; no kData
  kIndexStoreMany,   // the same with window c, the new value the last of it
  kMember,           // W a = R b.name (w c)
  kMemberStore,      // R a.name (w c) = the last of the window
  kMemberElement,    // register a becomes a reference to the field R b.name

  // Calls. Followed by kData (arguments, index, UseFlags).
  kCall,          // W a = the script's procedure named so (w c)
  kCallMethod,    // W a = method number bc of kData (w c) of the same instance
  kCallHost,      // W a = the host's function named so (w c)
  kCallBuiltin,   // W a = built-in number bc of kData (w c)
  kCallBuiltin1,  // W a = built-in number c (R b); extra: UseFlags; no kData
  kNew,           // register a = a new instance of the class of name bc
  kReturn,

  kDimArray,  // variable a becomes a fixed array with the bounds w b, extra of them; 0: a dynamic one
  kReDim,     // variable a, bounds w b, c of them; extra: Preserve
  kErase,     // a

  kOnError,  // extra: resume next
  kClearErr,
  kRaise,      // error number a with the detail of name bc
  kExecute,    // R b; extra: global
  kEval,       // W a = value of the text R b
  kGetRef,     // W a = R b
  kRandomize,  // R b; extra: there is a number
};

// Which of a, b, c are operands, as bits 1, 2, 4.
unsigned operands_of(Op op);

// How a value is used.
enum UseFlags : std::uint8_t {
  kWantValue = 1,      // an object gives its default property
  kConsumeFirst = 2,   // b is a temporary that nobody needs behind the instruction: it may hold the last reference
  kConsumeSecond = 4,  // the same for c
  kDiscard = 8,        // nobody wants the result
  kStatement = 16,     // a call as a statement
  kSetObject = 32,     // Set a(i) = object
};

struct Instruction {
  Op op;
  std::int8_t extra;
  std::uint16_t a;
  std::uint16_t b;
  std::uint16_t c;

  std::int32_t distance() const { return static_cast<std::int32_t>(extra) * 65536 + c; }
  std::uint32_t index() const { return b | (static_cast<std::uint32_t>(c) << 16U); }
};
static_assert(sizeof(Instruction) == 8);

// Where a statement begins.
struct StatementMark {
  std::uint32_t start;  // of its first instruction
  std::uint32_t line;
  std::uint32_t column;
  std::uint16_t temporaries;  // registers from here on hold nothing that is needed when it begins
  bool resumes;               // "On Error Resume Next" may go on here; false: it only tells where an error is
};

// One procedure, or what a program has outside procedures.
struct Code {
  Code() = default;
  Code(const Code&) = delete;
  Code& operator=(const Code&) = delete;

  Symbol* name = nullptr;  // nullptr: outside procedures
  ast::ProcedureKind kind = ast::ProcedureKind::kSub;
  const Class* owner = nullptr;
  bool is_private = false;
  bool is_script_level = false;  // its variables are globals
  bool is_dynamic = false;       // Execute or Eval within a procedure
  bool explicit_names = false;
  std::uint16_t parameters = 0;
  std::uint16_t variables = 0;  // registers with names: parameters, the result, locals
  std::uint16_t registers = 0;
  Operand result = kNoOperand;
  std::vector<std::uint8_t> by_value;  // of each parameter; empty: none is

  std::vector<Instruction> instructions;
  std::vector<Value> constants;
  std::vector<StatementMark> marks;
  std::vector<Symbol*> names;  // that instructions mention
  struct VariableName {
    Symbol* symbol;
    bool is_alias;  // the register only holds a reference to a variable of that name
  };
  std::vector<VariableName> variable_names;  // of registers
  std::vector<const Builtin*> builtins;
  std::vector<const Code*> methods;
  struct LocalConstant {
    Symbol* name;
    std::uint16_t constant;
  };
  std::vector<LocalConstant> local_constants;

  // Variables that nothing declares: script-level ones that came later take their place. Kept up to date by the
  // machine.
  std::vector<std::uint16_t> implicit_variables;
  // Execute and Eval within a procedure: registers that refer to that procedure's variables or to its DynamicScope's.
  struct OuterName {
    std::uint16_t variable;
    bool in_scope;  // `index` counts the DynamicScope's variables, not the registers
    std::uint16_t index;
  };
  std::vector<OuterName> outer_names;
  struct Binding {
    std::uint16_t variable;
    Value* target;
  };
  mutable std::vector<Binding> bindings;
  mutable std::uint32_t bindings_version = 0;

  bool is_function() const { return result != kNoOperand; }
};

// What a class of the script has under one name.
struct Member {
  Symbol* name = nullptr;
  bool is_field = false;
  bool field_is_private = false;
  std::uint16_t field = 0;
  const Code* get = nullptr;  // or the method
  const Code* let = nullptr;
  const Code* set = nullptr;
};

struct Class {
  Symbol* name = nullptr;
  std::vector<Member> members;
  std::vector<std::uint16_t> buckets;  // index of a member plus 1, by the name's hash; a power of two, never full
  std::uint16_t fields = 0;
  struct FieldArray {
    std::uint16_t field;
    std::vector<std::int32_t> bounds;  // empty: dynamic
  };
  std::vector<FieldArray> arrays;
  const Member* default_member = nullptr;
  const Code* initialize = nullptr;
  const Code* terminate = nullptr;

  const Member* find(const Symbol* name) const;
};

// What one program text was compiled to.
struct Unit {
  std::unique_ptr<Code> main;
  std::vector<std::unique_ptr<Code>> procedures;
  std::vector<std::unique_ptr<Class>> classes;
};

}  // namespace pv::vbscript
