#include "vbscript/operators.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

namespace {

// An operand of arithmetic: Booleans are Integers, texts the Doubles they hold; Empty is a 0 that leaves the type to
// the other side.
struct Operand {
  Type type = Type::kEmpty;
  std::int64_t whole = 0;  // Byte, Integer, Long; Currency: ten-thousandths
  double real = 0;         // Single, Double, Date

  bool is(Type wanted) const { return type == wanted; }
  bool is_real() const { return is(Type::kSingle) || is(Type::kDouble) || is(Type::kDate); }
  double as_real() const {
    if (is(Type::kCurrency)) return static_cast<double>(whole) / kCurrencyScale;
    return is_real() ? real : static_cast<double>(whole);
  }
  std::int64_t as_currency() const {
    if (is(Type::kCurrency)) return whole;
    return is_real() ? round_to_currency(real) : whole * 10000;
  }
};

Operand operand_of(Engine& engine, const Value& plain) {
  switch (plain.type()) {
    case Type::kEmpty:
    case Type::kNull:
      return {plain.type()};
    case Type::kByte:
    case Type::kInteger:
    case Type::kLong:
      return {plain.type(), plain.number()};
    case Type::kBoolean:
      return {Type::kInteger, plain.number()};
    case Type::kSingle:
    case Type::kDouble:
    case Type::kDate:
      return {plain.type(), 0, plain.real()};
    case Type::kCurrency:
      return {Type::kCurrency, plain.scaled()};
    default:
      return {Type::kDouble, 0, to_double(engine, plain)};
  }
}

// Both operands of an arithmetic operator.
struct Operands {
  Operands(Engine& engine, const Value& left_value, const Value& right_value)
      : left_plain(plain_value(engine, left_value, left_storage)),
        right_plain(plain_value(engine, right_value, right_storage)) {
    any_null = left_plain.is(Type::kNull) || right_plain.is(Type::kNull);
    if (any_null) return;
    left = operand_of(engine, left_plain);
    right = operand_of(engine, right_plain);
  }
  bool any(Type type) const { return left.is(type) || right.is(type); }
  bool both(Type type) const { return left.is(type) && right.is(type); }

  Value left_storage;
  Value right_storage;
  const Value& left_plain;
  const Value& right_plain;
  Operand left;
  Operand right;
  bool any_null = false;
};

// The type that arithmetic on the two is done in.
Type common_type(const Operands& operands) {
  for (const Type type : {Type::kDate, Type::kCurrency, Type::kDouble}) {
    if (operands.any(type)) return type;
  }
  if (operands.any(Type::kSingle)) return operands.any(Type::kLong) ? Type::kDouble : Type::kSingle;
  if (operands.any(Type::kLong)) return Type::kLong;
  const bool only_bytes = operands.any(Type::kByte) && !operands.any(Type::kInteger);
  return only_bytes ? Type::kByte : Type::kInteger;
}

Value double_value(double real) {
  if (!std::isfinite(real)) raise(ErrorCode::kOverflow);
  return Value::of_double(real);
}
Value single_value(double real) {
  const auto single = static_cast<float>(real);
  return std::isfinite(single) ? Value::single(single) : double_value(real);
}
Value date_value(double days) {
  const bool in_range = days > -657435 && days < 2958466;
  return in_range ? Value::date(days) : double_value(days);
}

template <typename Number>
bool fits(std::int64_t number) {
  return number >= std::numeric_limits<Number>::min() && number <= std::numeric_limits<Number>::max();
}

// A whole number in `type`, or in the next larger type that holds it.
Value whole_value(Type type, std::int64_t number) {
  if (type == Type::kByte && fits<std::uint8_t>(number)) return Value::byte(static_cast<std::uint8_t>(number));
  if (type != Type::kLong && fits<std::int16_t>(number)) return Value::integer(static_cast<std::int16_t>(number));
  if (fits<std::int32_t>(number)) return Value::of_long(static_cast<std::int32_t>(number));
  return Value::of_double(static_cast<double>(number));
}

Value real_value(Type type, double real) {
  if (type == Type::kSingle) return single_value(real);
  return type == Type::kDate ? date_value(real) : double_value(real);
}

bool is_whole(Type type) {
  return type == Type::kByte || type == Type::kInteger || type == Type::kLong;
}

Value currency_sum(std::int64_t left, std::int64_t right) {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(left, right, &sum)) raise(ErrorCode::kOverflow);
  return Value::currency(sum);
}
Value currency_difference(std::int64_t left, std::int64_t right) {
  std::int64_t difference = 0;
  if (__builtin_sub_overflow(left, right, &difference)) raise(ErrorCode::kOverflow);
  return Value::currency(difference);
}

std::uint64_t magnitude(std::int64_t number) {
  const auto bits = static_cast<std::uint64_t>(number);
  return number < 0 ? ~bits + 1 : bits;
}

// left * right / 10000 without 128 bits: each is split at its point, and no part product but the first can overflow.
Value currency_product(std::int64_t left, std::int64_t right) {
  constexpr std::uint64_t kScale = 10000;
  const std::uint64_t a = magnitude(left);
  const std::uint64_t b = magnitude(right);
  const std::uint64_t fractions = (a % kScale) * (b % kScale);
  std::uint64_t product = 0;
  bool overflow = __builtin_mul_overflow(a / kScale, b, &product);
  overflow |= __builtin_add_overflow(product, (a % kScale) * (b / kScale), &product);
  overflow |= __builtin_add_overflow(product, fractions / kScale, &product);
  const std::uint64_t rest = fractions % kScale;
  if (rest > kScale / 2 || (rest == kScale / 2 && product % 2 != 0)) ++product;
  const bool negative = (left < 0) != (right < 0);
  const std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
  if (overflow || product > largest + (negative ? 1U : 0U)) raise(ErrorCode::kOverflow);
  return Value::currency(static_cast<std::int64_t>(negative ? ~product + 1 : product));
}

Value quotient(Type type, double left, double right) {
  if (right == 0) raise(left == 0 ? ErrorCode::kOverflow : ErrorCode::kDivisionByZero);
  return real_value(type, left / right);
}

// Operands of \ and Mod: whole numbers as they are, everything else rounded to a Long.
struct WholeOperands {
  explicit WholeOperands(const Operands& operands) : type(common_type(operands)) {
    if (!is_whole(type)) type = Type::kLong;
    left = whole(operands.left);
    right = whole(operands.right);
    if (right == 0) raise(ErrorCode::kDivisionByZero);
  }
  static std::int64_t whole(const Operand& operand) {
    const bool is_real = !is_whole(operand.type) && !operand.is(Type::kEmpty);
    return is_real ? round_to_long(operand.as_real()) : operand.whole;
  }

  Type type;
  std::int64_t left = 0;
  std::int64_t right = 0;
};

Value join(Engine& engine, std::string_view left, std::string_view right) {
  constexpr std::size_t kBytesPerStep = 64;
  const std::size_t length = left.size() + right.size();
  if (length >= kBytesPerStep) engine.charge_steps(static_cast<std::int64_t>(length / kBytesPerStep));
  if (length == 0) return engine.heap().text({});
  Text* const text = engine.heap().new_text_of_size(length, length);
  std::copy(left.begin(), left.end(), text->data());
  std::copy(right.begin(), right.end(), text->data() + left.size());
  return Value::adopt(text);
}

// What + does before it thinks of numbers: true when that settles it.
bool add_as_texts(Engine& engine, const Value& left, const Value& right, Value& sum) {
  const bool left_text = left.is(Type::kString);
  const bool right_text = right.is(Type::kString);
  if (left_text && right_text) {
    sum = join(engine, left.view(), right.view());
  } else if (left_text && right.is(Type::kEmpty)) {
    sum = left;
  } else if (right_text && left.is(Type::kEmpty)) {
    sum = right;
  } else {
    return false;
  }
  return true;
}

template <typename Number>
Order order_of(Number left, Number right) {
  if (left == right) return Order::kEqual;
  return left < right ? Order::kLess : Order::kGreater;
}

Order compare_texts(Engine& engine, std::string_view left, std::string_view right) {
  charge_reading(engine, left.substr(0, right.size()));
  return order_of(left.compare(right), 0);
}

}  // namespace

Value add(Engine& engine, const Value& left, const Value& right) {
  Value left_storage;
  Value right_storage;
  const Value& left_plain = plain_value(engine, left, left_storage);
  const Value& right_plain = plain_value(engine, right, right_storage);
  Value sum;
  if (add_as_texts(engine, left_plain, right_plain, sum)) return sum;
  const Operands operands(engine, left_plain, right_plain);
  if (operands.any_null) return Value::null();
  const Type type = common_type(operands);
  if (is_whole(type)) return whole_value(type, operands.left.whole + operands.right.whole);
  if (type == Type::kCurrency) return currency_sum(operands.left.as_currency(), operands.right.as_currency());
  return real_value(type, operands.left.as_real() + operands.right.as_real());
}

Value subtract(Engine& engine, const Value& left, const Value& right) {
  const Operands operands(engine, left, right);
  if (operands.any_null) return Value::null();
  const Type type = common_type(operands);
  if (is_whole(type)) return whole_value(type, operands.left.whole - operands.right.whole);
  if (type == Type::kCurrency) return currency_difference(operands.left.as_currency(), operands.right.as_currency());
  const double difference = operands.left.as_real() - operands.right.as_real();
  return real_value(operands.both(Type::kDate) ? Type::kDouble : type, difference);
}

Value multiply(Engine& engine, const Value& left, const Value& right) {
  const Operands operands(engine, left, right);
  if (operands.any_null) return Value::null();
  const Type type = common_type(operands);
  if (is_whole(type)) return whole_value(type, operands.left.whole * operands.right.whole);
  const bool has_real = operands.any(Type::kSingle) || operands.any(Type::kDouble) || operands.any(Type::kDate);
  if (type == Type::kCurrency && !has_real) {
    return currency_product(operands.left.as_currency(), operands.right.as_currency());
  }
  return real_value(type == Type::kSingle ? type : Type::kDouble, operands.left.as_real() * operands.right.as_real());
}

Value divide(Engine& engine, const Value& left, const Value& right) {
  const Operands operands(engine, left, right);
  if (operands.any_null) return Value::null();
  const Type type = common_type(operands) == Type::kSingle ? Type::kSingle : Type::kDouble;
  return quotient(type, operands.left.as_real(), operands.right.as_real());
}

Value divide_whole(Engine& engine, const Value& left, const Value& right) {
  const Operands operands(engine, left, right);
  if (operands.any_null) return Value::null();
  const WholeOperands whole(operands);
  const std::int64_t result = whole.left / whole.right;
  if (!fits<std::int32_t>(result)) raise(ErrorCode::kOverflow);
  return whole_value(whole.type, result);
}

Value modulo(Engine& engine, const Value& left, const Value& right) {
  const Operands operands(engine, left, right);
  if (operands.any_null) return Value::null();
  const WholeOperands whole(operands);
  return whole_value(whole.type, whole.left % whole.right);
}

Value power(Engine& engine, const Value& left, const Value& right) {
  const Operands operands(engine, left, right);
  if (operands.any_null) return Value::null();
  const double base = operands.left.as_real();
  const double exponent = operands.right.as_real();
  const bool root_of_negative = base < 0 && std::trunc(exponent) != exponent;
  if (root_of_negative || (base == 0 && exponent < 0)) raise(ErrorCode::kInvalidCall);
  return double_value(std::pow(base, exponent));
}

Value concatenate(Engine& engine, const Value& left, const Value& right) {
  if (left.is(Type::kString) && right.is(Type::kString)) return join(engine, left.view(), right.view());
  Value left_storage;
  Value right_storage;
  const Value& left_plain = plain_value(engine, left, left_storage);
  const Value& right_plain = plain_value(engine, right, right_storage);
  const bool left_null = left_plain.is(Type::kNull);
  const bool right_null = right_plain.is(Type::kNull);
  if (left_null && right_null) return Value::null();
  TextStorage left_text;
  TextStorage right_text;
  return join(engine, left_null ? std::string_view{} : text_of(engine, left_plain, left_text),
              right_null ? std::string_view{} : text_of(engine, right_plain, right_text));
}

Value negate(Engine& engine, const Value& operand) {
  Value storage;
  const Value& plain = plain_value(engine, operand, storage);
  if (plain.is(Type::kNull)) return Value::null();
  const Operand number = operand_of(engine, plain);
  if (number.is(Type::kCurrency)) return currency_difference(0, number.whole);
  if (is_whole(number.type)) {  // a Byte's negative is an Integer, 0 too
    return whole_value(number.is(Type::kByte) ? Type::kInteger : number.type, -number.whole);
  }
  if (number.is(Type::kEmpty)) return Value::integer(0);
  return real_value(number.type, -number.real);
}

Value plus(Engine& engine, const Value& operand) {
  return plain_value(engine, operand);
}

Order compare(Engine& engine, const Value& left, const Value& right) {
  if (left.is(Type::kString) && right.is(Type::kString)) return compare_texts(engine, left.view(), right.view());
  Value left_storage;
  Value right_storage;
  const Value& a = plain_value(engine, left, left_storage);
  const Value& b = plain_value(engine, right, right_storage);
  const bool a_text = a.is(Type::kString);
  const bool b_text = b.is(Type::kString);
  if (a_text && b_text) return compare_texts(engine, a.view(), b.view());
  if (a.is(Type::kNull) || b.is(Type::kNull)) return Order::kNull;
  if (a_text && b.is(Type::kEmpty)) return compare_texts(engine, a.view(), {});
  if (b_text && a.is(Type::kEmpty)) return compare_texts(engine, {}, b.view());
  if (a_text || b_text) {  // the other one must be a number
    operand_of(engine, a_text ? b : a);
    return a_text ? Order::kGreater : Order::kLess;
  }
  const Operand x = operand_of(engine, a);
  const Operand y = operand_of(engine, b);
  if (x.is_real() || y.is_real()) return order_of(x.as_real(), y.as_real());
  return order_of(x.as_currency(), y.as_currency());
}

Value is_same_object(Engine& engine, const Value& left, const Value& right) {
  static_cast<void>(engine);
  const Value& a = left.resolved();
  const Value& b = right.resolved();
  if (!a.is(Type::kObject) || !b.is(Type::kObject)) raise(ErrorCode::kObjectRequired);
  return Value::boolean(a.object() == b.object());
}

}  // namespace pv::vbscript
