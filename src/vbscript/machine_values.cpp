// Storing values, and the operators for what the run loop does not do itself.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/machine.h"
#include "vbscript/operators.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// Bytes that count as one step of the time limit where they are copied or compared.
constexpr std::size_t kBytesAStep = 64;

Op comparison_of(Op jump) {
  const int at = static_cast<int>(jump);
  const int first = static_cast<int>(jump >= Op::kJumpUnlessEqual ? Op::kJumpUnlessEqual : Op::kJumpIfEqual);
  return jump < Op::kJumpIfEqual ? jump : static_cast<Op>(at - first + static_cast<int>(Op::kEqual));
}

bool holds(Op comparison, Order order) {
  switch (comparison) {
    case Op::kEqual:
      return order == Order::kEqual;
    case Op::kNotEqual:
      return order != Order::kEqual;
    case Op::kLess:
      return order == Order::kLess;
    case Op::kGreater:
      return order == Order::kGreater;
    case Op::kLessEqual:
      return order == Order::kLess || order == Order::kEqual;
    default:
      return order == Order::kGreater || order == Order::kEqual;
  }
}

void append(Text& text, std::string_view more) {
  std::memcpy(text.data() + text.length, more.data(), more.size());
  text.length += static_cast<std::uint32_t>(more.size());
}

}  // namespace

void Machine::store(Value& variable, Value&& value) {
  Value& target = variable.resolved();
  if (target.is(Type::kArray) && target.array()->fixed) raise(ErrorCode::kTypeMismatch);
  assign(target, std::move(value));
}

// An array that is another variable's fixed one, or that a reference points into, is not shared.
void Machine::assign(Value& target, Value&& value) {
  if (value.is(Type::kArray) && (value.array()->fixed || value.array()->locks != 0)) {
    target = copy_array(*value.array());
    return;
  }
  target = std::move(value);
}

void Machine::let(Value& variable, const Value& value) {
  const Value& source = value.resolved();
  store(variable, source.is(Type::kObject) ? plain_value(engine_, source) : Value(source));
}

void Machine::set(Value& variable, const Value& value, std::string_view name) {
  const Value& source = value.resolved();
  if (!source.is(Type::kObject)) raise(ErrorCode::kObjectRequired, name);
  Value& target = variable.resolved();
  if (target.is(Type::kArray) && target.array()->fixed) raise(ErrorCode::kTypeMismatch);
  target = source;
}

// What a call or an element gives, to where it was wanted.
void Machine::deliver(Value& destination, Value&& value, std::uint8_t flags) {
  if ((flags & kDiscard) != 0) {
    destination.reset();
    return;
  }
  if (!value.is(Type::kObject)) {
    store(destination, std::move(value));
  } else if ((flags & kWantValue) != 0) {
    store(destination, plain_value(engine_, value));
  } else {
    destination.resolved() = std::move(value);
  }
}

Value Machine::binary(Op op, const Value& left, const Value& right) {
  switch (op) {
    case Op::kAdd:
      return add(engine_, left, right);
    case Op::kSubtract:
      return subtract(engine_, left, right);
    case Op::kMultiply:
      return multiply(engine_, left, right);
    case Op::kDivide:
      return divide(engine_, left, right);
    case Op::kDivideWhole:
      return divide_whole(engine_, left, right);
    case Op::kModulo:
      return modulo(engine_, left, right);
    case Op::kPower:
      return power(engine_, left, right);
    case Op::kConcatenate:
      return concatenate(engine_, left, right);
    case Op::kAnd:
      return logical_and(engine_, left, right);
    case Op::kOr:
      return logical_or(engine_, left, right);
    case Op::kXor:
      return logical_xor(engine_, left, right);
    case Op::kEqv:
      return logical_eqv(engine_, left, right);
    case Op::kImp:
      return logical_imp(engine_, left, right);
    case Op::kIs:
      return is_same_object(engine_, left, right);
    default:
      break;
  }
  const Order order = compare(engine_, left, right);
  return order == Order::kNull ? Value::null() : Value::boolean(holds(op, order));
}

void Machine::binary_into(Op op, Value& into, const Value& left, const Value& right) {
  store(into, binary(op, left.resolved(), right.resolved()));
}

// For jumps: Null is not true.
bool Machine::compares(Op jump, const Value& left, const Value& right) {
  const Order order = compare(engine_, left.resolved(), right.resolved());
  return order != Order::kNull && holds(comparison_of(jump), order);
}

bool Machine::is_true(const Value& value) {
  Value storage;
  const Value& plain = plain_value(engine_, value.resolved(), storage);
  return !plain.is(Type::kNull) && to_boolean(engine_, plain);
}

// s = s & x appends in place when nothing else shares the text, with room for more of the same.
void Machine::concatenate_into(Value& into, Value& left, const Value& right) {
  Value& target = into.resolved();
  const Value& source = right.resolved();
  if (&target != &left.resolved() || !target.is(Type::kString) || source.is(Type::kObject) || source.is(Type::kNull)) {
    store(into, concatenate(engine_, left.resolved(), source));
    return;
  }
  TextStorage storage;
  const std::string_view more = text_of(engine_, source, storage);
  Text* text = target.text();
  const std::size_t length = std::size_t{text->length} + more.size();
  if (text->references == 1 && length <= text->capacity) {
    append(*text, more);
    return;
  }
  charge_steps(static_cast<std::int64_t>(length / kBytesAStep));
  if (length > kMaxTextBytes) raise(ErrorCode::kOutOfStringSpace);
  Value longer =
      Value::adopt(heap().new_text_of_size(0, std::min(std::max<std::size_t>(length * 2, 32), kMaxTextBytes)));
  append(*longer.text(), text->view());
  append(*longer.text(), more);
  target.swap(longer);
}

void Machine::concatenate_many(Value& into, const Value& first, Value* parts, std::size_t count) {
  const bool in_place = &into.resolved() == &first.resolved() && first.resolved().is(Type::kString);
  Value kept;
  const Value* head = &first.resolved();
  if (!head->is(Type::kString)) {
    kept = plain_value(engine_, *head);
    if (!kept.is(Type::kNull)) kept = to_text(engine_, kept);
    head = &kept;
  }
  bool all_null = head->is(Type::kNull);
  std::size_t added = 0;
  for (std::size_t i = 0; i < count; ++i) {
    Value& part = parts[i];
    if (part.is(Type::kReference)) part = Value(*part.target());
    if (part.is(Type::kObject)) part = plain_value(engine_, part);
    if (part.is(Type::kNull)) continue;
    all_null = false;
    if (!part.is(Type::kString)) part = to_text(engine_, part);
    added += part.text()->length;
  }
  if (all_null) {
    store(into, Value::null());
    return;
  }
  const std::size_t length = added + (head->is(Type::kNull) ? 0 : head->view().size());
  if (length > kMaxTextBytes) raise(ErrorCode::kOutOfStringSpace);
  // Converting the parts may have run the script: whether the text is shared is asked now.
  const bool append_here = in_place && head->is(Type::kString) && head->text()->references == 1;
  if (append_here && length <= head->text()->capacity) {
    for (std::size_t i = 0; i < count; ++i) {
      if (parts[i].is(Type::kString)) append(*head->text(), parts[i].view());
    }
  } else {
    charge_steps(static_cast<std::int64_t>(length / kBytesAStep));
    const std::size_t capacity = append_here ? std::min(length * 2, kMaxTextBytes) : length;
    Value joined = Value::adopt(heap().new_text_of_size(0, capacity));
    if (head->is(Type::kString)) append(*joined.text(), head->view());
    for (std::size_t i = 0; i < count; ++i) {
      if (parts[i].is(Type::kString)) append(*joined.text(), parts[i].view());
    }
    store(into, std::move(joined));
  }
  clear_window(parts, count);
}

std::string Machine::operand_name(const Code& code, Operand operand) const {
  const std::size_t index = index_of(operand);
  switch (kind_of(operand)) {
    case OperandKind::kRegister:
      if (index < code.variable_names.size() && code.variable_names[index].symbol != nullptr) {
        return std::string(code.variable_names[index].symbol->spelling);
      }
      return {};
    case OperandKind::kConstant:
      return {};
    case OperandKind::kGlobal:
      return std::string(symbols_.global_name(static_cast<std::uint32_t>(index)));
    case OperandKind::kField:
      for (const Member& member : code.owner->members) {
        if (member.is_field && member.field == index) return std::string(member.name->spelling);
      }
      return {};
  }
  return {};
}

}  // namespace pv::vbscript
