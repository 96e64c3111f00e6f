// What becomes of an error: On Error Resume Next, where it was, and the name in its text.
#include <algorithm>
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/instance.h"
#include "vbscript/machine.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

constexpr std::int64_t kErrorSteps = 1500;  // an exception takes microseconds

constexpr std::size_t kMaxShownText = 256;

// The last instruction that was read; it may be the second half of one.
std::uint32_t failing_index(const Frame& frame) {
  const auto next = static_cast<std::uint32_t>(frame.next - frame.code->instructions.data());
  return next == 0 ? 0 : next - 1;  // 0: while the frame was being made
}

const Instruction* failing(const Frame& frame) {
  const Instruction* at = frame.code->instructions.data() + failing_index(frame);
  return at->op == Op::kData || at->op == Op::kDataRegister ? at - 1 : at;
}

// A value without a name, as VBScript shows it.
std::string value_shown(const Value& value) {
  if (value.is(Type::kInteger) || value.is(Type::kLong)) return "[number: " + std::to_string(value.number()) + "]";
  if (value.is(Type::kDouble)) return "[number: " + std::string(double_text(value.real())) + "]";
  if (!value.is(Type::kString) || value.view().size() > kMaxShownText) return {};
  return "[string: \"" + std::string(value.view()) + "\"]";
}

}  // namespace

Position Machine::position_of(const Frame& frame) const {
  const auto& marks = frame.code->marks;
  const auto after = std::upper_bound(marks.begin(), marks.end(), failing_index(frame),
                                      [](std::uint32_t at, const StatementMark& mark) { return at < mark.start; });
  if (after == marks.begin()) return {};
  return {std::prev(after)->line, std::prev(after)->column};
}

// As the script writes it.
std::string Machine::spelling_of(const Builtin& builtin) const {
  const Symbol* symbol = symbols_.find(builtin.name);
  return std::string(symbol == nullptr ? builtin.name : symbol->spelling);
}

const Value& Machine::operand_value(const Frame& frame, Operand operand) const {
  const OperandKind kind = kind_of(operand);
  const std::size_t index = index_of(operand);
  const Value* value = kind == OperandKind::kRegister   ? &frame.registers[index]
                       : kind == OperandKind::kConstant ? &frame.code->constants[index]
                       : kind == OperandKind::kGlobal   ? &near_[index]
                                                        : &frame.self->fields()[index];
  return value->resolved();
}

// The text that is no number, as VBScript shows it; empty when the operand is none.
std::string Machine::text_shown(const Frame& frame, Operand operand) const {
  const Value& resolved = operand_value(frame, operand);
  if (!resolved.is(Type::kString) || number_in(resolved.view()).has_value()) return {};
  return value_shown(resolved);
}

// Operators and built-ins do not know what their operands are called.
void Machine::name_operands(RuntimeError& error, const Frame& frame) const {
  if (error.description != runtime_error_text(error.number)) return;
  const Code& code = *frame.code;
  const Instruction* failed = failing(frame);
  const unsigned operands = operands_of(failed->op);
  std::string name;
  switch (failed->op) {
    case Op::kCallBuiltin:
      name = spelling_of(*code.builtins[failed[1].index()]);
      break;
    case Op::kCallBuiltin1:
      name = spelling_of(*code.builtins[failed->c]);
      break;
    case Op::kLet: {
      const Value& target = operand_value(frame, failed->a);
      const bool into_fixed = target.is(Type::kArray) && target.array()->fixed;
      name = operand_name(code, into_fixed ? failed->a : failed->b);
      break;
    }
    case Op::kIndex:
      name = operand_name(code, failed->b);
      break;
    case Op::kSet:
      name = value_shown(operand_value(frame, failed->b));
      break;
    case Op::kIndexStore:
    case Op::kIndexStoreMany:
    case Op::kErase:
      name = operand_name(code, failed->a);
      break;
    default:
      // Operators, jumps and For.
      if (error.number != static_cast<std::int32_t>(ErrorCode::kTypeMismatch)) return;
      if (failed->op >= Op::kAdd && failed->op <= Op::kNot) {
        name = text_shown(frame, failed->b);
        if (name.empty() && (operands & 4U) != 0) name = text_shown(frame, failed->c);
      } else if (failed->op == Op::kForPrepare) {
        name = text_shown(frame, failed->b);
        if (name.empty()) name = text_shown(frame, failed->c);
        if (name.empty()) name = text_shown(frame, behind(failed->c, 1));
      } else if (failed->op == Op::kJumpIfTrue || failed->op == Op::kJumpUnlessTrue) {
        name = text_shown(frame, failed->a);
      }
  }
  if (!name.empty()) error.description += ": '" + name + "'";
}

// Goes on behind the failing statement of the nearest procedure with On Error Resume Next. False: there is none down to
// `until`, and all frames above it are gone.
bool Machine::recover(RuntimeError& error, const Frame* until) {
  steps_left_ -= kErrorSteps;  // whoever counts next sees it
  if (!error_placed_ && frame_ != until) {
    error_placed_ = true;
    error_at_ = position_of(*frame_);
    name_operands(error, *frame_);
  }
  Frame* handler = error.fatal ? nullptr : frame_;
  while (handler != nullptr && handler != until && !handler->resume_next) handler = handler->caller;
  if (handler == until) handler = nullptr;
  if (handler == nullptr) {
    while (frame_ != until) leave();
    return false;
  }
  while (frame_ != handler) leave();
  error_placed_ = false;
  err_.take(error);
  const Code& code = *handler->code;
  const std::uint32_t failed = failing_index(*handler);
  auto mark = std::upper_bound(code.marks.begin(), code.marks.end(), failed,
                               [](std::uint32_t at, const StatementMark& m) { return at < m.start; });
  // What the failing statement had made for itself goes too: the body of a For that failed must not find its limit.
  std::uint16_t first_needless = mark == code.marks.begin() ? code.variables : std::prev(mark)->temporaries;
  while (mark != code.marks.end() && !mark->resumes) ++mark;
  const bool at_end = mark == code.marks.end();
  handler->next = code.instructions.data() + (at_end ? code.instructions.size() - 1 : mark->start);
  handler->charged = handler->next;
  first_needless = std::min(first_needless, at_end ? code.variables : mark->temporaries);
  for (std::size_t i = first_needless; i < code.registers; ++i) handler->registers[i].reset();
  return true;
}

}  // namespace pv::vbscript
