// FormatNumber, FormatCurrency, FormatPercent, FormatDateTime: English (United States).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "vbscript/arguments.h"
#include "vbscript/builtins.h"
#include "vbscript/conversions.h"
#include "vbscript/engine.h"
#include "vbscript/number_text.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

namespace {

using Arguments = std::span<const Value>;

constexpr std::int32_t kUseDefault = -2;  // vbUseDefault
constexpr std::int32_t kMaxPlaces = 99;
constexpr int kSignificantDigits = 15;

struct NumberFormat {
  std::int32_t places = 2;
  bool leading_digit = true;
  bool parentheses = false;
  bool groups = true;
  std::string_view in_front;  // "$"
  std::string_view behind;    // "%"
};

bool tristate(Engine& engine, Arguments arguments, std::size_t index, bool preset) {
  const std::int32_t choice = long_argument(engine, arguments, index, kUseDefault);
  if (choice < kUseDefault || choice > 0) raise(ErrorCode::kInvalidCall);
  return choice == kUseDefault ? preset : choice != 0;
}

NumberFormat format_argument(Engine& engine, Arguments arguments, NumberFormat preset) {
  const std::int32_t places = long_argument(engine, arguments, 1, -1);
  if (places < -1 || places > kMaxPlaces) raise(ErrorCode::kInvalidCall);
  if (places >= 0) preset.places = places;
  preset.leading_digit = tristate(engine, arguments, 2, preset.leading_digit);
  preset.parentheses = tristate(engine, arguments, 3, preset.parentheses);
  preset.groups = tristate(engine, arguments, 4, preset.groups);
  return preset;
}

void number_digits(Engine& engine, const Value& argument, DecimalDigits& decimal) {
  Value storage;
  const Value& plain = plain_value(engine, argument, storage);
  if (plain.is(Type::kCurrency)) {
    digits_of(plain.scaled(), 4, decimal);
  } else {
    digits_of(to_double(engine, plain), kSignificantDigits, decimal);
  }
}

void append_whole_part(std::string& text, const DecimalDigits& decimal, const NumberFormat& format) {
  const std::int64_t digits = decimal.count == 0 ? 0 : std::max<std::int64_t>(decimal.point, 0);
  if (digits == 0 && (format.leading_digit || format.places == 0)) text += '0';
  for (std::int64_t i = 0; i < digits; ++i) {
    if (format.groups && i > 0 && (digits - i) % 3 == 0) text += ',';
    text += digit_at(decimal, i);
  }
}

std::string formatted(DecimalDigits& decimal, const NumberFormat& format) {
  round_digits(decimal, format.places);
  const bool negative = decimal.negative && decimal.count > 0;
  std::string text;
  if (negative) text += format.parentheses ? '(' : '-';
  text += format.in_front;
  append_whole_part(text, decimal, format);
  if (format.places > 0) text += '.';
  for (std::int64_t i = 0; i < format.places; ++i)
    text += digit_at(decimal, decimal.count == 0 ? -1 : decimal.point + i);
  text += format.behind;
  if (negative && format.parentheses) text += ')';
  return text;
}

Value format_as(Engine& engine, Arguments arguments, const NumberFormat& preset, int power_of_ten) {
  const NumberFormat format = format_argument(engine, arguments, preset);
  DecimalDigits decimal;
  number_digits(engine, arguments[0], decimal);
  decimal.point += power_of_ten;
  return engine.heap().text(formatted(decimal, format));
}

Value format_number(Engine& engine, Arguments arguments) {
  return format_as(engine, arguments, {}, 0);
}

Value format_currency(Engine& engine, Arguments arguments) {
  NumberFormat preset;
  preset.parentheses = true;
  preset.in_front = "$";
  return format_as(engine, arguments, preset, 0);
}

Value format_percent(Engine& engine, Arguments arguments) {
  NumberFormat preset;
  preset.behind = "%";
  return format_as(engine, arguments, preset, 2);
}

ShortText date_as(double days, std::int32_t format) {
  switch (format) {
    case 0:
      return date_text(days);
    case 1:
      return long_date_text(days);
    case 2:
      return short_date_text(days);
    case 3:
      return long_time_text(days);
    case 4:
      return short_time_text(days);
    default:
      raise(ErrorCode::kInvalidCall);
  }
}

Value format_date_time(Engine& engine, Arguments arguments) {
  const double days = to_date(engine, arguments[0]);
  return engine.heap().text(date_as(days, long_argument(engine, arguments, 1, 0)));
}

constexpr Builtin kFunctions[] = {
    {"formatcurrency", 1, 5, format_currency},
    {"formatdatetime", 1, 2, format_date_time},
    {"formatnumber", 1, 5, format_number},
    {"formatpercent", 1, 5, format_percent},
};

}  // namespace

std::span<const Builtin> format_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
