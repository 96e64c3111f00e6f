// CBool, CByte, CCur, CDate, CDbl, CInt, CLng, CSng, CStr, Hex, Oct.
#include <array>
#include <charconv>
#include <cstdint>
#include <span>
#include <string_view>

#include "vbscript/builtins.h"
#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

namespace {

using Arguments = std::span<const Value>;

Value c_bool(Engine& engine, Arguments arguments) {
  return Value::boolean(to_boolean(engine, arguments[0]));
}
Value c_byte(Engine& engine, Arguments arguments) {
  return Value::byte(to_byte(engine, arguments[0]));
}
Value c_cur(Engine& engine, Arguments arguments) {
  return Value::currency(to_currency(engine, arguments[0]));
}
Value c_date(Engine& engine, Arguments arguments) {
  return Value::date(to_date(engine, arguments[0]));
}
Value c_dbl(Engine& engine, Arguments arguments) {
  return Value::of_double(to_double(engine, arguments[0]));
}
Value c_int(Engine& engine, Arguments arguments) {
  return Value::integer(to_integer(engine, arguments[0]));
}
Value c_lng(Engine& engine, Arguments arguments) {
  return Value::of_long(to_long(engine, arguments[0]));
}
Value c_sng(Engine& engine, Arguments arguments) {
  return Value::single(to_single(engine, arguments[0]));
}
Value c_str(Engine& engine, Arguments arguments) {
  return to_text(engine, arguments[0]);
}

// The bits of a number as it is stored: a negative Integer has 16 of them, any other negative number 32.
std::uint32_t bits_of(Engine& engine, const Value& plain) {
  const auto bits = static_cast<std::uint32_t>(to_long(engine, plain));
  return plain.is(Type::kInteger) || plain.is(Type::kBoolean) ? bits & 0xFFFFU : bits;
}

Value in_base(Engine& engine, const Value& argument, int base) {
  const Value plain = plain_value(engine, argument);
  if (plain.is(Type::kNull)) return Value::null();
  std::array<char, 16> digits;
  const char* const end = std::to_chars(digits.begin(), digits.end(), bits_of(engine, plain), base).ptr;
  for (char& c : digits) {
    if (&c < end && c >= 'a') c = static_cast<char>(c - 'a' + 'A');
  }
  return engine.heap().text({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

Value hex(Engine& engine, Arguments arguments) {
  return in_base(engine, arguments[0], 16);
}
Value oct(Engine& engine, Arguments arguments) {
  return in_base(engine, arguments[0], 8);
}

constexpr Builtin kFunctions[] = {
    {"cbool", 1, 1, c_bool}, {"cbyte", 1, 1, c_byte}, {"ccur", 1, 1, c_cur}, {"cdate", 1, 1, c_date},
    {"cdbl", 1, 1, c_dbl},   {"cint", 1, 1, c_int},   {"clng", 1, 1, c_lng}, {"csng", 1, 1, c_sng},
    {"cstr", 1, 1, c_str},   {"hex", 1, 1, hex},      {"oct", 1, 1, oct},
};

}  // namespace

std::span<const Builtin> conversion_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
