#include "vbscript/conversions.h"

#include <cmath>
#include <limits>

#include "vbscript/characters.h"
#include "vbscript/civil_dates.h"
#include "vbscript/engine.h"
#include "vbscript/number_text.h"
#include "vbscript/object.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

namespace {

constexpr double kCurrencyLimit = 9223372036854775808.0;  // ten-thousandths, first ones beyond
constexpr int kMaxDefaultsInARow = 100;                   // a default property may give an object, and so on

// Null has an error of its own; what is left (arrays, error values) is no value of a simple type.
[[noreturn]] void refuse(const Value& value) {
  raise(value.is(Type::kNull) ? ErrorCode::kInvalidUseOfNull : ErrorCode::kTypeMismatch);
}

template <typename Number>
Number in_range(double whole) {
  if (!(whole >= std::numeric_limits<Number>::min() && whole <= std::numeric_limits<Number>::max())) {
    raise(ErrorCode::kOverflow);
  }
  return static_cast<Number>(whole);
}

NumberInText number_or_mismatch(Engine& engine, std::string_view text) {
  charge_reading(engine, text);
  NumberInText number;
  if (!parse_number(text, number)) raise(ErrorCode::kTypeMismatch);
  return number;
}

double double_or_overflow(const NumberInText& number) {
  const auto real = double_of(number);
  if (!real) raise(ErrorCode::kOverflow);
  return *real;
}

double text_to_double(Engine& engine, std::string_view text) {
  return double_or_overflow(number_or_mismatch(engine, text));
}

// "&HFFFF" fills the type that is wanted: -1 as an Integer, 65535 as a Long.
template <typename Number>
Number text_to_whole(Engine& engine, std::string_view text) {
  const NumberInText number = number_or_mismatch(engine, text);
  using Bits = std::make_unsigned_t<Number>;
  if (number.is_bits && number.bits <= std::numeric_limits<Bits>::max()) {
    return static_cast<Number>(static_cast<Bits>(number.bits));
  }
  return in_range<Number>(std::nearbyint(double_or_overflow(number)));
}

template <typename Number>
Number to_whole(Engine& engine, const Value& value) {
  Value storage;
  const Value& plain = plain_value(engine, value, storage);
  switch (plain.type()) {
    case Type::kEmpty:
      return 0;
    case Type::kByte:
    case Type::kInteger:
    case Type::kLong:
      return in_range<Number>(plain.number());
    case Type::kBoolean:  // CByte(True) is 255
      return static_cast<Number>(plain.number());
    case Type::kString:
      return text_to_whole<Number>(engine, plain.view());
    default:
      return in_range<Number>(std::nearbyint(to_double(engine, plain)));
  }
}

std::int64_t text_to_currency(Engine& engine, std::string_view text) {
  const auto currency = currency_of(number_or_mismatch(engine, text));
  if (!currency) raise(ErrorCode::kOverflow);
  return *currency;
}

double checked_date(double days) {
  if (!is_valid_date(days)) raise(ErrorCode::kOverflow);
  return days;
}

double text_to_date(Engine& engine, std::string_view text) {
  if (const auto days = date_in(text)) return *days;
  return checked_date(text_to_double(engine, text));
}

bool text_to_boolean(Engine& engine, std::string_view text) {
  if (const auto truth = boolean_in(text)) return *truth;
  return text_to_double(engine, text) != 0;
}

ShortText error_text(std::int32_t code) {
  ShortText text("Error ");
  text.append(whole_number_text(code));
  return text;
}

// The text of a value that is neither a text nor an object.
ShortText made_text(const Value& plain) {
  switch (plain.type()) {
    case Type::kEmpty:
      return {};
    case Type::kByte:
    case Type::kInteger:
    case Type::kLong:
      return whole_number_text(plain.number());
    case Type::kBoolean:
      return ShortText(plain.number() != 0 ? "True" : "False");
    case Type::kSingle:
      return single_text(plain.real());
    case Type::kDouble:
      return double_text(plain.real());
    case Type::kCurrency:
      return currency_text(plain.scaled());
    case Type::kDate:
      return date_text(plain.real());
    case Type::kError:
      return error_text(plain.number());
    default:
      refuse(plain);
  }
}

}  // namespace

Value plain_value(Engine& engine, const Value& value) {
  Value plain = value.resolved();
  for (int i = 0; plain.is(Type::kObject); ++i) {
    if (plain.object() == nullptr) raise(ErrorCode::kObjectNotSet);
    if (i == kMaxDefaultsInARow) raise(ErrorCode::kOutOfStackSpace);
    plain = plain.object()->use_default(engine, Access::kGet, {});
  }
  return plain;
}

const Value& plain_value(Engine& engine, const Value& value, Value& storage) {
  const Value& resolved = value.resolved();
  if (!resolved.is(Type::kObject)) return resolved;
  storage = plain_value(engine, resolved);
  return storage;
}

std::int16_t to_integer(Engine& engine, const Value& value) {
  return to_whole<std::int16_t>(engine, value);
}
std::int32_t to_long(Engine& engine, const Value& value) {
  return to_whole<std::int32_t>(engine, value);
}
std::uint8_t to_byte(Engine& engine, const Value& value) {
  return to_whole<std::uint8_t>(engine, value);
}

double to_double(Engine& engine, const Value& value) {
  Value storage;
  const Value& plain = plain_value(engine, value, storage);
  switch (plain.type()) {
    case Type::kEmpty:
      return 0;
    case Type::kByte:
    case Type::kInteger:
    case Type::kLong:
    case Type::kBoolean:
      return plain.number();
    case Type::kSingle:
    case Type::kDouble:
    case Type::kDate:
      return plain.real();
    case Type::kCurrency:
      return static_cast<double>(plain.scaled()) / kCurrencyScale;
    case Type::kString:
      return text_to_double(engine, plain.view());
    default:
      refuse(plain);
  }
}

Value number_argument(Engine& engine, const Value& value) {
  Value plain = plain_value(engine, value);
  switch (plain.type()) {
    case Type::kEmpty:
    case Type::kBoolean:
      return Value::integer(to_integer(engine, plain));
    case Type::kString:
      return Value::of_double(to_double(engine, plain));
    case Type::kArray:
    case Type::kError:
      raise(ErrorCode::kTypeMismatch);
    default:
      return plain;
  }
}

float to_single(Engine& engine, const Value& value) {
  const auto single = static_cast<float>(to_double(engine, value));
  if (std::isinf(single)) raise(ErrorCode::kOverflow);
  return single;
}

std::int64_t to_currency(Engine& engine, const Value& value) {
  Value storage;
  const Value& plain = plain_value(engine, value, storage);
  if (plain.is(Type::kCurrency)) return plain.scaled();
  if (plain.is(Type::kString)) return text_to_currency(engine, plain.view());
  return round_to_currency(to_double(engine, plain));
}

double to_date(Engine& engine, const Value& value) {
  Value storage;
  const Value& plain = plain_value(engine, value, storage);
  if (plain.is(Type::kDate)) return plain.real();
  if (plain.is(Type::kString)) return text_to_date(engine, plain.view());
  return checked_date(to_double(engine, plain));
}

bool to_boolean(Engine& engine, const Value& value) {
  Value storage;
  const Value& plain = plain_value(engine, value, storage);
  if (plain.is(Type::kBoolean)) return plain.number() != 0;
  if (plain.is(Type::kString)) return text_to_boolean(engine, plain.view());
  return to_double(engine, plain) != 0;
}

Value to_text(Engine& engine, const Value& value) {
  Value plain = plain_value(engine, value);
  if (plain.is(Type::kString)) return plain;
  return engine.heap().text(made_text(plain));
}

std::string_view text_of(Engine& engine, const Value& value, Value& storage) {
  if (const Value& resolved = value.resolved(); resolved.is(Type::kString)) return resolved.view();
  storage = to_text(engine, value);
  return storage.view();
}

std::string_view text_of(Engine& engine, const Value& value, TextStorage& storage) {
  const Value& plain = plain_value(engine, value, storage.kept);
  if (plain.is(Type::kString)) return plain.view();
  storage.digits = made_text(plain);
  return storage.digits;
}

void charge_reading(Engine& engine, std::string_view text) {
  constexpr std::size_t kBytesPerStep = 8;
  if (text.size() >= kBytesPerStep) engine.charge_steps(static_cast<std::int64_t>(text.size() / kBytesPerStep));
}

std::int32_t round_to_long(double real) {
  return in_range<std::int32_t>(std::nearbyint(real));
}

std::int64_t round_to_currency(double real) {
  const double scaled = std::nearbyint(real * kCurrencyScale);
  if (!(scaled >= -kCurrencyLimit && scaled < kCurrencyLimit)) raise(ErrorCode::kOverflow);
  constexpr double kExact = 9007199254740992.0;  // beyond it the product was rounded to fewer digits than it has
  if (std::abs(scaled) < kExact) return static_cast<std::int64_t>(scaled);
  const double whole = std::trunc(real);
  return static_cast<std::int64_t>(whole) * 10000 +
         static_cast<std::int64_t>(std::nearbyint((real - whole) * kCurrencyScale));
}

std::optional<bool> boolean_in(std::string_view text) {
  if (same_word(text, "true")) return true;
  if (same_word(text, "false")) return false;
  return std::nullopt;
}

}  // namespace pv::vbscript
