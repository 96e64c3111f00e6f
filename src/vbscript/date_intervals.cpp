#include "vbscript/date_intervals.h"

#include <algorithm>
#include <cmath>

#include "vbscript/characters.h"
#include "vbscript/civil_dates.h"

namespace pv::vbscript {

namespace {

struct IntervalName {
  std::string_view name;
  Interval interval;
};
constexpr IntervalName kIntervals[] = {
    {"yyyy", Interval::kYear}, {"q", Interval::kQuarter}, {"m", Interval::kMonth}, {"y", Interval::kDayOfYear},
    {"d", Interval::kDay},     {"w", Interval::kWeekday}, {"ww", Interval::kWeek}, {"h", Interval::kHour},
    {"n", Interval::kMinute},  {"s", Interval::kSecond},
};

// Months or seconds that one step is; days are neither.
int months_of(Interval interval) {
  if (interval == Interval::kYear) return 12;
  return interval == Interval::kQuarter ? 3 : 1;
}
int seconds_of(Interval interval) {
  if (interval == Interval::kHour) return 3600;
  return interval == Interval::kMinute ? 60 : 1;
}

bool counts_months(Interval interval) {
  return interval <= Interval::kMonth;
}
bool counts_seconds(Interval interval) {
  return interval >= Interval::kHour;
}

std::int64_t floor_divide(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t quotient = dividend / divisor;
  return dividend % divisor < 0 ? quotient - 1 : quotient;
}

// The whole days behind a date and the part of the day, exact to the last bit.
double with_serial(double days, std::int64_t serial) {
  const double fraction = std::fabs(days - std::trunc(days));
  return serial >= 0 ? static_cast<double>(serial) + fraction : static_cast<double>(serial) - fraction;
}

std::optional<double> checked(double days) {
  if (!is_valid_date(days)) return std::nullopt;
  return days;
}

std::optional<double> add_months(double days, std::int64_t count) {
  const auto serial = static_cast<std::int64_t>(std::trunc(days));
  const CivilDate date = civil_from_serial(serial);
  const std::int64_t months = std::int64_t{date.year} * 12 + date.month - 1 + count;
  const std::int64_t year = floor_divide(months, 12);
  const auto month = static_cast<int>(months - year * 12 + 1);
  if (year < 100 || year > 9999) return std::nullopt;
  const int day = std::min(date.day, days_in_month(year, month));
  return with_serial(days, serial_from_civil(year, month, day));
}

std::int64_t month_index(std::int64_t serial) {
  const CivilDate date = civil_from_serial(serial);
  return std::int64_t{date.year} * 12 + date.month - 1;
}

std::int64_t second_index(const DayAndSecond& parts) {
  return parts.serial * kSecondsPerDay + parts.second;
}

std::int64_t week_start(std::int64_t serial, const WeekRules& rules) {
  return serial - (weekday_by(serial, rules) - 1);
}

// The first day of the week that is the first of `year`.
std::int64_t first_week_start(std::int64_t year, const WeekRules& rules) {
  const std::int64_t new_year = serial_from_civil(year, 1, 1);
  const std::int64_t start = week_start(new_year, rules);
  const std::int64_t days_in_new_year = 7 - (new_year - start);
  const int days_needed = rules.first_week == 2 ? 4 : rules.first_week == 3 ? 7 : 1;
  return days_in_new_year >= days_needed ? start : start + 7;
}

}  // namespace

std::optional<Interval> interval_in(std::string_view text) {
  for (const IntervalName& entry : kIntervals) {
    if (same_word(entry.name, text)) return entry.interval;
  }
  return std::nullopt;
}

int weekday_by(std::int64_t serial, const WeekRules& rules) {
  return (weekday_of(serial) - rules.first_day + 7) % 7 + 1;
}

int week_of_year(std::int64_t serial, const WeekRules& rules) {
  const std::int64_t year = civil_from_serial(serial).year;
  std::int64_t first = first_week_start(year, rules);
  if (serial < first) first = first_week_start(year - 1, rules);
  // The last days of December may lie in the next year's first week already; where the first of January decides
  // that, they are counted in their own year.
  if (rules.first_week != 1 && serial >= first_week_start(year + 1, rules)) return 1;
  return static_cast<int>((serial - first) / 7) + 1;
}

std::optional<double> add_intervals(double days, Interval interval, double count) {
  constexpr double kFarOut = 1e12;  // seconds; beyond all dates
  if (!(std::fabs(count) < kFarOut)) return std::nullopt;
  const auto steps = static_cast<std::int64_t>(count);
  if (counts_months(interval)) return add_months(days, steps * months_of(interval));
  if (counts_seconds(interval)) {
    const DayAndSecond parts = split_date(days);
    return checked(join_date(parts.serial, parts.second + steps * seconds_of(interval)));
  }
  const auto serial = static_cast<std::int64_t>(std::trunc(days));
  return checked(with_serial(days, serial + steps * (interval == Interval::kWeek ? 7 : 1)));
}

std::int64_t intervals_between(double from, double to, Interval interval, const WeekRules& rules) {
  const DayAndSecond a = split_date(from);
  const DayAndSecond b = split_date(to);
  if (counts_months(interval)) {
    const int months = months_of(interval);
    return floor_divide(month_index(b.serial), months) - floor_divide(month_index(a.serial), months);
  }
  if (counts_seconds(interval)) {
    const int seconds = seconds_of(interval);
    return floor_divide(second_index(b), seconds) - floor_divide(second_index(a), seconds);
  }
  if (interval == Interval::kWeekday) return (b.serial - a.serial) / 7;
  if (interval == Interval::kWeek) return (week_start(b.serial, rules) - week_start(a.serial, rules)) / 7;
  return b.serial - a.serial;
}

int date_part(double days, Interval interval, const WeekRules& rules) {
  const DayAndSecond parts = split_date(days);
  const CivilDate date = civil_from_serial(parts.serial);
  switch (interval) {
    case Interval::kYear:
      return date.year;
    case Interval::kQuarter:
      return (date.month - 1) / 3 + 1;
    case Interval::kMonth:
      return date.month;
    case Interval::kDayOfYear:
      return static_cast<int>(parts.serial - serial_from_civil(date.year, 1, 1)) + 1;
    case Interval::kDay:
      return date.day;
    case Interval::kWeekday:
      return weekday_by(parts.serial, rules);
    case Interval::kWeek:
      return week_of_year(parts.serial, rules);
    case Interval::kHour:
      return static_cast<int>(parts.second / 3600);
    case Interval::kMinute:
      return static_cast<int>(parts.second / 60 % 60);
    case Interval::kSecond:
      return static_cast<int>(parts.second % 60);
  }
  return 0;
}

}  // namespace pv::vbscript
