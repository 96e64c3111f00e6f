// IsArray, IsDate, IsEmpty, IsNull, IsNumeric, IsObject, TypeName, VarType.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>

#include "vbscript/builtins.h"
#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/object.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

namespace {

using Arguments = std::span<const Value>;

constexpr std::int16_t kArrayOfVariants = 8192 + 12;

bool is_object(const Value& value) {
  return value.is(Type::kObject);
}

bool lacks_default(const RuntimeError& error) {
  constexpr ErrorCode kReasons[] = {ErrorCode::kNoSuchMember, ErrorCode::kArgumentNotOptional,
                                    ErrorCode::kWrongArgumentCount};
  return !error.fatal && std::any_of(std::begin(kReasons), std::end(kReasons), [&error](ErrorCode reason) {
    return error.number == static_cast<std::int32_t>(reason);
  });
}

// The value of an object's default property, or the object where it has none that can be had without arguments.
Value default_or_object(Engine& engine, const Value& value) {
  if (!is_object(value) || value.object() == nullptr) return value;
  try {
    return plain_value(engine, value);
  } catch (const RuntimeError& error) {
    if (!lacks_default(error)) throw;
    return value;
  }
}

Value is_array(Engine&, Arguments arguments) {
  return Value::boolean(arguments[0].is(Type::kArray));
}
Value is_object_function(Engine&, Arguments arguments) {
  return Value::boolean(is_object(arguments[0]));
}

Value is_empty(Engine& engine, Arguments arguments) {
  return Value::boolean(default_or_object(engine, arguments[0]).is(Type::kEmpty));
}
Value is_null(Engine& engine, Arguments arguments) {
  return Value::boolean(default_or_object(engine, arguments[0]).is(Type::kNull));
}

Value is_date(Engine& engine, Arguments arguments) {
  const Value plain = default_or_object(engine, arguments[0]);
  if (!plain.is(Type::kString)) return Value::boolean(plain.is(Type::kDate));
  charge_reading(engine, plain.view());
  return Value::boolean(date_in(plain.view()).has_value());
}

bool holds_number(Engine& engine, const Value& plain) {
  switch (plain.type()) {
    case Type::kString:
      charge_reading(engine, plain.view());
      return number_in(plain.view()).has_value();
    case Type::kEmpty:
    case Type::kByte:
    case Type::kInteger:
    case Type::kLong:
    case Type::kSingle:
    case Type::kDouble:
    case Type::kCurrency:
    case Type::kBoolean:
      return true;
    default:
      return false;
  }
}

Value is_numeric(Engine& engine, Arguments arguments) {
  return Value::boolean(holds_number(engine, default_or_object(engine, arguments[0])));
}

std::int16_t var_type_of(const Value& value) {
  switch (value.type()) {
    case Type::kString:
      return 8;
    case Type::kObject:
      return 9;
    case Type::kArray:
      return kArrayOfVariants;
    default:
      return static_cast<std::int16_t>(value.type());
  }
}

Value var_type(Engine& engine, Arguments arguments) {
  return Value::integer(var_type_of(default_or_object(engine, arguments[0])));
}

std::string_view type_name_of(const Value& value) {
  switch (value.type()) {
    case Type::kEmpty:
      return "Empty";
    case Type::kNull:
      return "Null";
    case Type::kInteger:
      return "Integer";
    case Type::kLong:
      return "Long";
    case Type::kSingle:
      return "Single";
    case Type::kDouble:
      return "Double";
    case Type::kCurrency:
      return "Currency";
    case Type::kDate:
      return "Date";
    case Type::kError:
      return "Error";
    case Type::kBoolean:
      return "Boolean";
    case Type::kByte:
      return "Byte";
    case Type::kString:
      return "String";
    case Type::kArray:
      return "Variant()";
    default:
      return value.object() == nullptr ? "Nothing" : value.object()->type_name();
  }
}

Value type_name(Engine& engine, Arguments arguments) {
  return engine.heap().text(type_name_of(arguments[0]));
}

constexpr Builtin kFunctions[] = {
    {"isarray", 1, 1, is_array},   {"isdate", 1, 1, is_date},       {"isempty", 1, 1, is_empty},
    {"isnull", 1, 1, is_null},     {"isnumeric", 1, 1, is_numeric}, {"isobject", 1, 1, is_object_function},
    {"typename", 1, 1, type_name}, {"vartype", 1, 1, var_type},
};

}  // namespace

std::span<const Builtin> type_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
