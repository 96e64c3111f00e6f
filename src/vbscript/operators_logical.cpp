// Not, And, Or, Xor, Eqv, Imp: bit by bit on whole numbers, and with Null as the third truth value.
#include <cmath>
#include <cstdint>

#include "vbscript/conversions.h"
#include "vbscript/operators.h"

namespace pv::vbscript {

namespace {

struct Bits {
  Type type = Type::kEmpty;  // kNull, kEmpty, kBoolean, kByte, kInteger, kLong
  std::int32_t bits = 0;

  bool is_null() const { return type == Type::kNull; }
};

Bits bits_of(Engine& engine, const Value& value) {
  Value storage;
  const Value& plain = plain_value(engine, value, storage);
  switch (plain.type()) {
    case Type::kNull:
    case Type::kEmpty:
      return {plain.type(), 0};
    case Type::kBoolean:
    case Type::kByte:
    case Type::kInteger:
    case Type::kLong:
      return {plain.type(), plain.number()};
    case Type::kString:
      if (const auto truth = boolean_in(plain.view())) return {Type::kBoolean, *truth ? -1 : 0};
      [[fallthrough]];
    default:
      return {Type::kLong, to_long(engine, plain)};
  }
}

Type common_type(Bits left, Bits right) {
  if (left.type == right.type) return left.type == Type::kEmpty ? Type::kInteger : left.type;
  if (left.type == Type::kLong || right.type == Type::kLong) return Type::kLong;
  const bool with_empty = left.type == Type::kEmpty || right.type == Type::kEmpty;
  const bool with_byte = left.type == Type::kByte || right.type == Type::kByte;
  return with_empty && with_byte ? Type::kByte : Type::kInteger;
}

// The operands' bits have the width of `type` or are continued by their sign, so that the result needs no more than a
// cut.
Value value_of(Type type, std::int32_t bits) {
  switch (type) {
    case Type::kBoolean:
      return Value::boolean(bits != 0);
    case Type::kByte:
      return Value::byte(static_cast<std::uint8_t>(bits));
    case Type::kLong:
      return Value::of_long(bits);
    default:
      return Value::integer(static_cast<std::int16_t>(bits));
  }
}
Value value_of(Bits bits) {
  return value_of(bits.type, bits.bits);
}

template <typename Operation>
Value combine(Bits left, Bits right, Operation operation) {
  if (left.is_null() || right.is_null()) return Value::null();
  return value_of(common_type(left, right), operation(left.bits, right.bits));
}

}  // namespace

Value logical_not(Engine& engine, const Value& operand) {
  const Bits bits = bits_of(engine, operand);
  return bits.is_null() ? Value::null() : value_of(bits.type, ~bits.bits);
}

// 0 decides whatever the other one is.
Value logical_and(Engine& engine, const Value& left, const Value& right) {
  const Bits a = bits_of(engine, left);
  const Bits b = bits_of(engine, right);
  if (a.is_null() && !b.is_null() && b.bits == 0) return value_of(b);
  if (b.is_null() && !a.is_null() && a.bits == 0) return value_of(a);
  return combine(a, b, [](std::int32_t x, std::int32_t y) { return x & y; });
}

// What is not 0 decides whatever the other one is.
Value logical_or(Engine& engine, const Value& left, const Value& right) {
  const Bits a = bits_of(engine, left);
  const Bits b = bits_of(engine, right);
  if (a.is_null() && b.bits != 0) return value_of(b);
  if (b.is_null() && a.bits != 0) return value_of(a);
  return combine(a, b, [](std::int32_t x, std::int32_t y) { return x | y; });
}

Value logical_xor(Engine& engine, const Value& left, const Value& right) {
  return combine(bits_of(engine, left), bits_of(engine, right), [](std::int32_t x, std::int32_t y) { return x ^ y; });
}

Value logical_eqv(Engine& engine, const Value& left, const Value& right) {
  return combine(bits_of(engine, left), bits_of(engine, right),
                 [](std::int32_t x, std::int32_t y) { return ~(x ^ y); });
}

// False implies anything, and anything implies True: Null beside them does not matter.
Value logical_imp(Engine& engine, const Value& left, const Value& right) {
  const Bits a = bits_of(engine, left);
  const Bits b = bits_of(engine, right);
  if (a.is_null() && b.bits != 0) return value_of(b);
  if (b.is_null() && !a.is_null() && a.bits != -1) return value_of(a.type, ~a.bits);
  return combine(a, b, [](std::int32_t x, std::int32_t y) { return ~x | y; });
}

}  // namespace pv::vbscript
