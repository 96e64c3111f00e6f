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

// One conversion, and the value that is made of what it gives.
template <auto kConvert, auto kMake>
Value converted(Engine& engine, Arguments arguments) {
  return kMake(kConvert(engine, arguments[0]));
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
    {"cbool", 1, 1, converted<to_boolean, Value::boolean>},
    {"cbyte", 1, 1, converted<to_byte, Value::byte>},
    {"ccur", 1, 1, converted<to_currency, Value::currency>},
    {"cdate", 1, 1, converted<to_date, Value::date>},
    {"cdbl", 1, 1, converted<to_double, Value::of_double>},
    {"cint", 1, 1, converted<to_integer, Value::integer>},
    {"clng", 1, 1, converted<to_long, Value::of_long>},
    {"csng", 1, 1, converted<to_single, Value::single>},
    {"cstr", 1, 1, c_str},
    {"hex", 1, 1, hex},
    {"oct", 1, 1, oct},
};

}  // namespace

std::span<const Builtin> conversion_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
