// Date, Time, Now, Timer, DateAdd, DateDiff, DatePart, DateSerial, DateValue, TimeSerial, TimeValue, Year to Second,
// Weekday, and the names of months and weekdays.
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>

#include "vbscript/arguments.h"
#include "vbscript/builtins.h"
#include "vbscript/civil_dates.h"
#include "vbscript/clock.h"
#include "vbscript/conversions.h"
#include "vbscript/date_intervals.h"
#include "vbscript/engine.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

namespace {

using Arguments = std::span<const Value>;

constexpr std::size_t kAbbreviation = 3;

std::int64_t serial_of(const LocalTime& time) {
  return serial_from_civil(time.year, time.month, time.day);
}
std::int64_t second_of(const LocalTime& time) {
  return time.hour * 3600 + time.minute * 60 + time.second;
}

Value now(Engine&, Arguments) {
  const LocalTime time = local_time();
  return Value::date(join_date(serial_of(time), second_of(time)));
}
Value date(Engine&, Arguments) {
  return Value::date(static_cast<double>(serial_of(local_time())));
}
Value time(Engine&, Arguments) {
  return Value::date(join_date(0, second_of(local_time())));
}
Value timer(Engine&, Arguments) {
  return Value::single(static_cast<float>(seconds_since_midnight(local_time())));
}

// A date beyond the years 100 to 9999 is an invalid argument of the function that would give it.
Value date_or_invalid(double days) {
  if (!is_valid_date(days)) raise(ErrorCode::kInvalidCall);
  return Value::date(days);
}

// One of 1 to `last`; 0 (the system's choice) and an omitted one are the first.
int choice_argument(Engine& engine, Arguments arguments, std::size_t index, int last) {
  const std::int32_t choice = long_argument(engine, arguments, index, 1);
  if (choice < 0 || choice > last) raise(ErrorCode::kInvalidCall);
  return choice == 0 ? 1 : choice;
}
WeekRules week_rules(Engine& engine, Arguments arguments, std::size_t index) {
  return {choice_argument(engine, arguments, index, 7), choice_argument(engine, arguments, index + 1, 3)};
}

Interval interval_argument(Engine& engine, const Value& argument) {
  const TextArgument text(engine, argument, TextArgument::kNoNull);
  const auto interval = interval_in(text.view());
  if (!interval) raise(ErrorCode::kInvalidCall);
  return *interval;
}

Value date_add(Engine& engine, Arguments arguments) {
  const Interval interval = interval_argument(engine, arguments[0]);
  const Value plain = plain_value(engine, arguments[2]);
  if (plain.is(Type::kNull)) return Value::null();
  const double count = std::nearbyint(to_double(engine, arguments[1]));
  const auto days = add_intervals(to_date(engine, plain), interval, count);
  if (!days) raise(ErrorCode::kInvalidCall);
  return Value::date(*days);
}

Value date_diff(Engine& engine, Arguments arguments) {
  const Interval interval = interval_argument(engine, arguments[0]);
  const Value from = plain_value(engine, arguments[1]);
  const Value to = plain_value(engine, arguments[2]);
  const WeekRules rules = week_rules(engine, arguments, 3);
  if (from.is(Type::kNull) || to.is(Type::kNull)) return Value::null();
  const std::int64_t count = intervals_between(to_date(engine, from), to_date(engine, to), interval, rules);
  return Value::of_long(round_to_long(static_cast<double>(count)));
}

Value date_part_function(Engine& engine, Arguments arguments) {
  const Interval interval = interval_argument(engine, arguments[0]);
  const Value plain = plain_value(engine, arguments[1]);
  const WeekRules rules = week_rules(engine, arguments, 2);
  if (plain.is(Type::kNull)) return Value::null();
  return Value::integer(static_cast<std::int16_t>(date_part(to_date(engine, plain), interval, rules)));
}

// Years below 100 are those of the 20th century here, as documented; in texts "05" is 2005.
Value date_serial(Engine& engine, Arguments arguments) {
  const std::int64_t year = to_integer(engine, arguments[0]);
  const std::int64_t month = to_integer(engine, arguments[1]);
  const std::int64_t day = to_integer(engine, arguments[2]);
  const bool short_year = year >= 0 && year <= 99;
  return date_or_invalid(static_cast<double>(serial_from_civil(short_year ? year + 1900 : year, month, day)));
}

Value time_serial(Engine& engine, Arguments arguments) {
  const std::int64_t hour = to_integer(engine, arguments[0]);
  const std::int64_t minute = to_integer(engine, arguments[1]);
  const std::int64_t second = to_integer(engine, arguments[2]);
  return Value::date(join_date(0, (hour * 60 + minute) * 60 + second));
}

// DateValue and TimeValue want a date, or a text with one: a number is none, and neither is a text with a number.
Value date_of_text(Engine& engine, const Value& argument) {
  Value plain = plain_value(engine, argument);
  if (plain.is(Type::kNull) || plain.is(Type::kDate)) return plain;
  if (!plain.is(Type::kString)) return Value::date(to_date(engine, plain));
  charge_reading(engine, plain.view());
  const auto days = date_in(plain.view());
  if (!days) raise(ErrorCode::kTypeMismatch);
  return Value::date(*days);
}

Value date_value(Engine& engine, Arguments arguments) {
  const Value given = date_of_text(engine, arguments[0]);
  return given.is(Type::kNull) ? given : Value::date(std::trunc(given.real()));
}
Value time_value(Engine& engine, Arguments arguments) {
  const Value given = date_of_text(engine, arguments[0]);
  return given.is(Type::kNull) ? given : Value::date(join_date(0, split_date(given.real()).second));
}

Value part(Engine& engine, const Value& argument, Interval interval, const WeekRules& rules = {}) {
  const Value plain = plain_value(engine, argument);
  if (plain.is(Type::kNull)) return Value::null();
  return Value::integer(static_cast<std::int16_t>(date_part(to_date(engine, plain), interval, rules)));
}
Value year(Engine& engine, Arguments arguments) {
  return part(engine, arguments[0], Interval::kYear);
}
Value month(Engine& engine, Arguments arguments) {
  return part(engine, arguments[0], Interval::kMonth);
}
Value day(Engine& engine, Arguments arguments) {
  return part(engine, arguments[0], Interval::kDay);
}
Value hour(Engine& engine, Arguments arguments) {
  return part(engine, arguments[0], Interval::kHour);
}
Value minute(Engine& engine, Arguments arguments) {
  return part(engine, arguments[0], Interval::kMinute);
}
Value second(Engine& engine, Arguments arguments) {
  return part(engine, arguments[0], Interval::kSecond);
}
Value weekday(Engine& engine, Arguments arguments) {
  return part(engine, arguments[0], Interval::kWeekday, {choice_argument(engine, arguments, 1, 7), 1});
}

bool abbreviated(Engine& engine, Arguments arguments) {
  return arguments.size() > 1 && !arguments[1].is_missing() && to_boolean(engine, arguments[1]);
}
Value name(Engine& engine, Arguments arguments, std::string_view full) {
  return engine.heap().text(abbreviated(engine, arguments) ? full.substr(0, kAbbreviation) : full);
}

Value month_name_function(Engine& engine, Arguments arguments) {
  const std::int32_t number = to_long(engine, arguments[0]);
  if (number < 1 || number > 12) raise(ErrorCode::kInvalidCall);
  return name(engine, arguments, month_name(number));
}

Value weekday_name_function(Engine& engine, Arguments arguments) {
  const std::int32_t number = to_long(engine, arguments[0]);
  const int first_day = choice_argument(engine, arguments, 2, 7);
  if (number < 1 || number > 7) raise(ErrorCode::kInvalidCall);
  return name(engine, arguments, weekday_name((number - 1 + first_day - 1) % 7 + 1));
}

constexpr Builtin kFunctions[] = {
    {"date", 0, 0, date},
    {"dateadd", 3, 3, date_add},
    {"datediff", 3, 5, date_diff},
    {"datepart", 2, 4, date_part_function},
    {"dateserial", 3, 3, date_serial},
    {"datevalue", 1, 1, date_value},
    {"day", 1, 1, day},
    {"hour", 1, 1, hour},
    {"minute", 1, 1, minute},
    {"month", 1, 1, month},
    {"monthname", 1, 2, month_name_function},
    {"now", 0, 0, now},
    {"second", 1, 1, second},
    {"time", 0, 0, time},
    {"timer", 0, 0, timer},
    {"timeserial", 3, 3, time_serial},
    {"timevalue", 1, 1, time_value},
    {"weekday", 1, 2, weekday},
    {"weekdayname", 1, 3, weekday_name_function},
    {"year", 1, 1, year},
};

}  // namespace

std::span<const Builtin> date_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
