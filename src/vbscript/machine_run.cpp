// The run loop: one switch, with whole numbers, doubles and texts done in place where that takes a few lines.
#include <cmath>
#include <new>
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/instance.h"
#include "vbscript/machine.h"
#include "vbscript/machine_quick.h"
#include "vbscript/operators.h"
#include "vbscript/random.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
// Before anything that may raise an error, call or look at frames.
#define SAVE() (frame->next = ip, frame->charged = charged)

#define LOAD_FRAME()                                                     \
  do {                                                                   \
    frame = frame_;                                                      \
    ip = frame->next;                                                    \
    charged = frame->charged;                                            \
    bases[0] = frame->registers;                                         \
    bases[1] = const_cast<Value*>(frame->code->constants.data());        \
    bases[2] = near_.data();                                             \
    bases[3] = frame->self == nullptr ? nullptr : frame->self->fields(); \
  } while (false)

#define A at(bases, i.a)
#define B at(bases, i.b)
#define C at(bases, i.c)

#define JUMP()                    \
  do {                            \
    const auto by = i.distance(); \
    ip += by;                     \
    charged += by;                \
  } while (false)

#define LOOP()                   \
  do {                           \
    steps_left_ -= ip - charged; \
    if (steps_left_ < 0) {       \
      SAVE();                    \
      out_of_time();             \
    }                            \
    ip += i.distance();          \
    charged = ip;                \
  } while (false)

#define WHOLE_OR_REAL(symbol)                                                            \
  {                                                                                      \
    Value& into = A;                                                                     \
    const Value& left = B;                                                               \
    const Value& right = C;                                                              \
    if (into.plain()) {                                                                  \
      if (both_whole(left, right)) {                                                     \
        set_whole(into, left, right, std::int64_t{left.number()} symbol right.number()); \
        continue;                                                                        \
      }                                                                                  \
      double left_real;                                                                  \
      double right_real;                                                                 \
      if (load_real(left, left_real) && load_real(right, right_real)) {                  \
        const double result = left_real symbol right_real;                               \
        if (std::isfinite(result)) {                                                     \
          into.set_real(Type::kDouble, result);                                          \
          continue;                                                                      \
        }                                                                                \
      }                                                                                  \
    }                                                                                    \
    SAVE();                                                                              \
    binary_into(i.op, into, left, right);                                                \
    break;                                                                               \
  }

#define COMPARE(relation)                                     \
  {                                                           \
    const Value& left = B;                                    \
    const Value& right = C;                                   \
    Value& into = A;                                          \
    if (into.plain()) {                                       \
      const int known = quick_compare<relation>(left, right); \
      if (known >= 0) {                                       \
        into.set_number(Type::kBoolean, -known);              \
        continue;                                             \
      }                                                       \
    }                                                         \
    SAVE();                                                   \
    binary_into(i.op, into, left, right);                     \
    break;                                                    \
  }

#define COMPARE_AND_JUMP(relation, when)               \
  {                                                    \
    const Value& left = A;                             \
    const Value& right = B;                            \
    int known = quick_compare<relation>(left, right);  \
    if (known >= 0) {                                  \
      if ((known != 0) == (when)) JUMP();              \
      continue;                                        \
    }                                                  \
    SAVE();                                            \
    if (compares(i.op, left, right) == (when)) JUMP(); \
    break;                                             \
  }

#define CALL(function)                  \
  {                                     \
    const Instruction& data = *ip++;    \
    steps_left_ -= ip - charged;        \
    charged = ip;                       \
    SAVE();                             \
    if (steps_left_ < 0) out_of_time(); \
    function(*frame, i, data, bases);   \
    if (frame_ != frame) LOAD_FRAME();  \
    break;                              \
  }

void Machine::execute(const Frame* until) {
  Frame* frame;
  const Instruction* ip;
  const Instruction* charged;
  Value* bases[4];
  LOAD_FRAME();
  for (;;) {
    if (heap().terminate_waiting()) {
      SAVE();
      run_terminators();
    }
    for (;;) {
      const Instruction& i = *ip++;
      switch (i.op) {
        case Op::kLet: {
          Value& into = A;
          const Value& from = B;
          if (into.plain() && (from.plain() || from.is(Type::kString))) {
            into.replace_plain(from);
            continue;
          }
          SAVE();
          let(into, from);
          break;
        }
        case Op::kCopy: {
          Value& into = A;
          const Value& from = B.resolved();
          if (into.plain()) {
            into.replace_plain(from);
            continue;
          }
          into = from;
          break;
        }
        case Op::kSet: {
          SAVE();
          Value& from = B;
          if ((i.extra & kConsumeFirst) != 0) {
            set(A, from, {});
            from.reset();
          } else {
            set(A, from, from.resolved().is(Type::kObject) ? std::string() : operand_name(*frame->code, i.b));
          }
          break;
        }
        case Op::kRefer: {
          Value& target = B.resolved();
          A = Value::reference(target);
          continue;
        }
        case Op::kLoadConstant:
          A = frame->code->constants[i.index()];
          break;
        case Op::kGlobal:
          A = Value::reference(global(i.index()));
          break;
        case Op::kLookUp:
          SAVE();
          look_up(*frame, i, bases);
          break;
        case Op::kClear:
          A.reset();
          break;
        case Op::kMe:
          A = Value::share(frame->self);
          break;

        case Op::kAdd:
          WHOLE_OR_REAL(+)
        case Op::kSubtract:
          WHOLE_OR_REAL(-)
        case Op::kMultiply:
          WHOLE_OR_REAL(*)
        case Op::kDivide: {
          Value& into = A;
          const Value& left = B;
          const Value& right = C;
          if (into.plain() && (both_whole(left, right) || both_real(left, right)) && real_of(right) != 0) {
            const double result = real_of(left) / real_of(right);
            if (std::isfinite(result)) {
              into.set_real(Type::kDouble, result);
              continue;
            }
          }
          SAVE();
          binary_into(i.op, into, left, right);
          break;
        }
        case Op::kDivideWhole:
        case Op::kModulo: {
          Value& into = A;
          const Value& left = B;
          const Value& right = C;
          if (into.plain() && both_whole(left, right) && right.number() > 0) {
            const std::int32_t result =
                i.op == Op::kModulo ? left.number() % right.number() : left.number() / right.number();
            set_whole(into, left, right, result);
            continue;
          }
          SAVE();
          binary_into(i.op, into, left, right);
          break;
        }
        case Op::kAnd:
        case Op::kOr: {
          Value& into = A;
          const Value& left = B;
          const Value& right = C;
          if (into.plain() && left.is(Type::kBoolean) && right.is(Type::kBoolean)) {
            const auto result = i.op == Op::kAnd ? left.number() & right.number() : left.number() | right.number();
            into.set_number(Type::kBoolean, result);
            continue;
          }
          SAVE();
          binary_into(i.op, into, left, right);
          break;
        }
        case Op::kIs: {
          SAVE();
          Value& left = B;
          Value& right = C;
          Value result = binary(i.op, left.resolved(), right.resolved());
          if ((i.extra & kConsumeFirst) != 0) left.reset();
          if ((i.extra & kConsumeSecond) != 0) right.reset();
          store(A, std::move(result));
          break;
        }
        case Op::kPower:
        case Op::kXor:
        case Op::kEqv:
        case Op::kImp:
          SAVE();
          binary_into(i.op, A, B, C);
          break;
        case Op::kConcatenate:
          SAVE();
          concatenate_into(A, B, C);
          break;
        case Op::kConcatenateMany:
          SAVE();
          concatenate_many(A, B, &C, static_cast<std::size_t>(i.extra));
          break;
        case Op::kEqual:
          COMPARE(0)
        case Op::kNotEqual:
          COMPARE(1)
        case Op::kLess:
          COMPARE(2)
        case Op::kGreater:
          COMPARE(3)
        case Op::kLessEqual:
          COMPARE(4)
        case Op::kGreaterEqual:
          COMPARE(5)

        case Op::kNegate:
          SAVE();
          store(A, negate(engine_, B.resolved()));
          break;
        case Op::kPlus:
          SAVE();
          store(A, plus(engine_, B.resolved()));
          break;
        case Op::kNot: {
          Value& into = A;
          const Value& from = B;
          if (into.plain() && from.is(Type::kBoolean)) {
            into.set_number(Type::kBoolean, ~from.number());
            continue;
          }
          SAVE();
          store(into, logical_not(engine_, from.resolved()));
          break;
        }

        case Op::kJump:
          JUMP();
          continue;
        case Op::kLoop:
          LOOP();
          continue;
        case Op::kJumpIfTrue:
        case Op::kJumpUnlessTrue: {
          const Value& value = A;
          if (value.is(Type::kBoolean)) {
            if ((value.number() != 0) == (i.op == Op::kJumpIfTrue)) JUMP();
            continue;
          }
          SAVE();
          if (is_true(value) == (i.op == Op::kJumpIfTrue)) JUMP();
          break;
        }
        case Op::kJumpIfEqual:
          COMPARE_AND_JUMP(0, true)
        case Op::kJumpIfNotEqual:
          COMPARE_AND_JUMP(1, true)
        case Op::kJumpIfLess:
          COMPARE_AND_JUMP(2, true)
        case Op::kJumpIfGreater:
          COMPARE_AND_JUMP(3, true)
        case Op::kJumpIfLessEqual:
          COMPARE_AND_JUMP(4, true)
        case Op::kJumpIfGreaterEqual:
          COMPARE_AND_JUMP(5, true)
        case Op::kJumpUnlessEqual:
          COMPARE_AND_JUMP(0, false)
        case Op::kJumpUnlessNotEqual:
          COMPARE_AND_JUMP(1, false)
        case Op::kJumpUnlessLess:
          COMPARE_AND_JUMP(2, false)
        case Op::kJumpUnlessGreater:
          COMPARE_AND_JUMP(3, false)
        case Op::kJumpUnlessLessEqual:
          COMPARE_AND_JUMP(4, false)
        case Op::kJumpUnlessGreaterEqual:
          COMPARE_AND_JUMP(5, false)

        case Op::kForPrepare: {
          const Instruction& data = *ip++;
          SAVE();
          if (!for_prepare(A, B, &C)) {
            ip += data.distance();
            charged += data.distance();
          }
          break;
        }
        case Op::kForNext: {
          Value& counter = A;
          const Value* window = &B;
          if (both_whole(counter, window[0]) && is_whole(window[1])) {
            const std::int64_t next = std::int64_t{counter.number()} + window[1].number();
            const std::int32_t limit = window[0].number();
            set_whole(counter, counter, window[1], next);
            if (window[1].number() >= 0 ? next <= limit : next >= limit) LOOP();
            continue;
          }
          SAVE();
          if (for_next(counter, &B)) LOOP();
          break;
        }
        case Op::kForEachPrepare:
          SAVE();
          for_each_prepare(*frame, i, bases);
          break;
        case Op::kForEachNext:
          SAVE();
          if (for_each_next(A, &B)) LOOP();
          break;
        case Op::kWith:
          SAVE();
          with(*frame, i, bases);
          break;

        case Op::kIndex: {
          const Value& subject = B.resolved();
          const Value& index = C.resolved();
          if (subject.is(Type::kArray) && is_whole(index) && (i.extra & kConsumeFirst) == 0) {
            const Array& array = *subject.array();
            Value& into = A;
            if (array.dimensions.size() == 1 && static_cast<std::size_t>(index.number()) < array.elements.size() &&
                into.plain()) {
              const Value& found = array.elements[static_cast<std::size_t>(index.number())];
              if (found.plain() || found.is(Type::kString)) {
                into.replace_plain(found);
                continue;
              }
            }
          }
          SAVE();
          index_single(*frame, i, bases);
          if (frame_ != frame) LOAD_FRAME();
          break;
        }
        case Op::kIndexMany:
          CALL(index_many)
        case Op::kElement: {
          const Instruction& data = *ip++;
          SAVE();
          element_reference(*frame, i, data, bases, nullptr);
          if (frame_ != frame) LOAD_FRAME();
          break;
        }
        case Op::kArgumentElement: {
          const Instruction& data = *ip++;
          SAVE();
          element_reference(*frame, i, data, bases, &at(bases, data.a));
          if (frame_ != frame) LOAD_FRAME();
          break;
        }
        case Op::kIndexStore: {
          const Value& subject = A.resolved();
          const Value& index = B.resolved();
          Value& value = C;
          if (subject.is(Type::kArray) && is_whole(index) && (value.plain() || value.is(Type::kString))) {
            Array& array = *subject.array();
            if (array.dimensions.size() == 1 && static_cast<std::size_t>(index.number()) < array.elements.size() &&
                !array.shared() && (i.extra & kSetObject) == 0) {
              Value& place = array.elements[static_cast<std::size_t>(index.number())];
              if (place.plain() && value.plain()) {
                place.replace_plain(value);
                continue;
              }
              place = value;
              if ((i.extra & kConsumeSecond) != 0) value.reset();
              break;
            }
          }
          SAVE();
          index_store(*frame, i, bases);
          if (frame_ != frame) LOAD_FRAME();
          break;
        }
        case Op::kIndexStoreMany:
          CALL(index_store_many)
        case Op::kMember:
          CALL(member)
        case Op::kMemberStore:
          CALL(member_store)
        case Op::kMemberElement: {
          const Instruction& data = *ip++;
          SAVE();
          member_element(*frame, i, data, bases);
          break;
        }

        case Op::kCall:
          CALL(call_procedure)
        case Op::kCallMethod:
          CALL(call_method)
        case Op::kCallHost:
          CALL(call_host)
        case Op::kCallBuiltin:
          CALL(call_builtin)
        case Op::kCallBuiltin1:
          SAVE();
          call_builtin1(*frame, i, bases);
          break;
        case Op::kNew:
          SAVE();
          new_instance(*frame, i, bases);
          if (frame_ != frame) LOAD_FRAME();
          break;
        case Op::kReturn: {
          SAVE();
          steps_left_ -= ip - charged;
          if (heap().terminate_waiting()) run_terminators();
          leave_with_result();
          if (frame_ == until) return;
          LOAD_FRAME();
          break;
        }

        case Op::kDimArray:
          SAVE();
          dim_array(A, &B, static_cast<std::size_t>(i.extra));
          break;
        case Op::kReDim:
          SAVE();
          redim(A, &B, i.c, i.extra != 0);
          break;
        case Op::kErase:
          SAVE();
          erase(A);
          break;

        case Op::kOnError:
          frame->resume_next = i.extra != 0;
          err_.clear();
          continue;
        case Op::kClearErr:
          err_.clear();
          continue;
        case Op::kRaise: {
          SAVE();
          const std::uint32_t name = i.index();
          raise(static_cast<ErrorCode>(i.a), name == 0 ? std::string_view() : frame->code->names[name - 1]->spelling);
        }
        case Op::kExecute:
          SAVE();
          execute_text(*frame, i, bases);
          LOAD_FRAME();
          break;
        case Op::kEval:
          SAVE();
          eval_text(*frame, i, bases);
          LOAD_FRAME();
          break;
        case Op::kGetRef:
          SAVE();
          get_ref(i, bases);
          break;
        case Op::kRandomize:
          SAVE();
          randomize(engine_, i.extra == 0 ? nullptr : &B.resolved());
          break;
        case Op::kData:
        case Op::kDataRegister:
          continue;  // only ever read with the instruction before
        default:
          __builtin_unreachable();
      }
      break;
    }
  }
}

// Runs until the topmost frame is `until` again. Errors that no procedure above it catches leave it as an exception,
// with those procedures gone.
void Machine::run(Frame* until) {
  for (;;) {
    try {
      if (heap().terminate_waiting()) run_terminators();
      execute(until);
      return;
    } catch (RuntimeError& error) {
      if (!recover(error, until)) throw;
    } catch (const std::bad_alloc&) {
      RuntimeError error{static_cast<std::int32_t>(ErrorCode::kOutOfMemory), {}};
      error.description = std::string(runtime_error_text(error.number));
      if (!recover(error, until)) raise(ErrorCode::kOutOfMemory);
    }
  }
}

}  // namespace pv::vbscript
