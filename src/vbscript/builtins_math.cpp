// Abs, Atn, Cos, Exp, Fix, Int, Log, RGB, Rnd, Round, Sgn, Sin, Sqr, Tan.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

#include "vbscript/arguments.h"
#include "vbscript/builtins.h"
#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/operators.h"
#include "vbscript/random.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

namespace {

using Arguments = std::span<const Value>;

Value finite(double real) {
  if (!std::isfinite(real)) raise(ErrorCode::kOverflow);
  return Value::of_double(real);
}

bool is_real(const Value& number) {
  return number.is(Type::kSingle) || number.is(Type::kDouble) || number.is(Type::kDate);
}

Value with_real(const Value& number, double real) {
  if (number.is(Type::kSingle)) return Value::single(static_cast<float>(real));
  Value result;
  result.set_real(number.type(), real);
  return result;
}

Value abs(Engine& engine, Arguments arguments) {
  Value number = number_argument(engine, arguments[0]);
  if (is_real(number)) return with_real(number, std::fabs(number.real()));
  if (number.is(Type::kNull) || number.is(Type::kByte)) return number;
  const bool negative = number.is(Type::kCurrency) ? number.scaled() < 0 : number.number() < 0;
  return negative ? negate(engine, number) : number;
}

Value fix(Engine& engine, Arguments arguments) {
  Value number = number_argument(engine, arguments[0]);
  if (is_real(number)) return with_real(number, std::trunc(number.real()));
  if (number.is(Type::kCurrency)) return Value::currency(number.scaled() - number.scaled() % 10000);
  return number;
}

std::int64_t floor_of_currency(std::int64_t scaled) {
  const std::int64_t rest = scaled % 10000;
  std::int64_t whole = scaled - rest;
  if (rest < 0 && __builtin_sub_overflow(whole, 10000, &whole)) raise(ErrorCode::kOverflow);
  return whole;
}

Value int_function(Engine& engine, Arguments arguments) {
  Value number = number_argument(engine, arguments[0]);
  if (is_real(number)) return with_real(number, std::floor(number.real()));
  if (number.is(Type::kCurrency)) return Value::currency(floor_of_currency(number.scaled()));
  return number;
}

Value sgn(Engine& engine, Arguments arguments) {
  const double number = to_double(engine, arguments[0]);
  return Value::integer(static_cast<std::int16_t>(number > 0 ? 1 : number < 0 ? -1 : 0));
}

constexpr std::int32_t kMaxRoundPlaces = 22;

double round_real(double real, std::int32_t places) {
  const double scale = std::pow(10.0, places);
  const double scaled = real * scale;
  return std::isfinite(scaled) ? std::nearbyint(scaled) / scale : real;
}

std::int64_t round_currency(std::int64_t scaled, std::int32_t places) {
  std::int64_t unit = 10000;
  for (std::int32_t i = 0; i < places && unit > 1; ++i) unit /= 10;
  const std::int64_t rest = scaled % unit;
  std::int64_t rounded = scaled - rest;
  const std::int64_t twice = std::abs(rest) * 2;
  const bool away = twice > unit || (twice == unit && rounded / unit % 2 != 0);
  if (away && __builtin_add_overflow(rounded, rest < 0 ? -unit : unit, &rounded)) raise(ErrorCode::kOverflow);
  return rounded;
}

Value round(Engine& engine, Arguments arguments) {
  const std::int32_t places = long_argument(engine, arguments, 1, 0);
  Value number = number_argument(engine, arguments[0]);
  if (places < 0 || places > kMaxRoundPlaces) raise(ErrorCode::kInvalidCall);
  if (is_real(number)) return with_real(number, round_real(number.real(), places));
  if (number.is(Type::kCurrency)) return Value::currency(round_currency(number.scaled(), places));
  return number;
}

Value sqr(Engine& engine, Arguments arguments) {
  const double number = to_double(engine, arguments[0]);
  if (number < 0) raise(ErrorCode::kInvalidCall);
  return finite(std::sqrt(number));
}

Value log(Engine& engine, Arguments arguments) {
  const double number = to_double(engine, arguments[0]);
  if (number <= 0) raise(ErrorCode::kInvalidCall);
  return finite(std::log(number));
}

Value exp(Engine& engine, Arguments arguments) {
  return finite(std::exp(to_double(engine, arguments[0])));
}
Value atn(Engine& engine, Arguments arguments) {
  return finite(std::atan(to_double(engine, arguments[0])));
}
Value cos(Engine& engine, Arguments arguments) {
  return finite(std::cos(to_double(engine, arguments[0])));
}
Value sin(Engine& engine, Arguments arguments) {
  return finite(std::sin(to_double(engine, arguments[0])));
}
Value tan(Engine& engine, Arguments arguments) {
  return finite(std::tan(to_double(engine, arguments[0])));
}

std::int32_t colour_part(Engine& engine, const Value& argument) {
  const std::int32_t part = to_long(engine, argument);
  if (part < 0) raise(ErrorCode::kInvalidCall);
  return std::min<std::int32_t>(part, 255);
}

Value rgb(Engine& engine, Arguments arguments) {
  const std::int32_t red = colour_part(engine, arguments[0]);
  const std::int32_t green = colour_part(engine, arguments[1]);
  const std::int32_t blue = colour_part(engine, arguments[2]);
  return Value::of_long(red + green * 256 + blue * 65536);
}

Value rnd(Engine& engine, Arguments arguments) {
  const bool given = !arguments.empty() && !arguments[0].is_missing();
  const float number = given ? to_single(engine, arguments[0]) : 1.0F;
  if (number == 0) return Value::single(last_random(engine.random));
  if (number < 0) restart_random(engine.random, number);
  return Value::single(next_random(engine.random));
}

constexpr Builtin kFunctions[] = {
    {"abs", 1, 1, abs},          {"atn", 1, 1, atn}, {"cos", 1, 1, cos}, {"exp", 1, 1, exp}, {"fix", 1, 1, fix},
    {"int", 1, 1, int_function}, {"log", 1, 1, log}, {"rgb", 3, 3, rgb}, {"rnd", 0, 1, rnd}, {"round", 1, 2, round},
    {"sgn", 1, 1, sgn},          {"sin", 1, 1, sin}, {"sqr", 1, 1, sqr}, {"tan", 1, 1, tan},
};

}  // namespace

std::span<const Builtin> math_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
