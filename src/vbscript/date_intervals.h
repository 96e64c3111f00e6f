// What DateAdd, DateDiff and DatePart count in.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pv::vbscript {

enum class Interval : std::uint8_t {
  kYear,
  kQuarter,
  kMonth,
  kDayOfYear,
  kDay,
  kWeekday,
  kWeek,
  kHour,
  kMinute,
  kSecond,
};

// "yyyy", "q", "m", "y", "d", "w", "ww", "h", "n", "s" in any case.
std::optional<Interval> interval_in(std::string_view text);

// Which day a week begins with (1 Sunday to 7 Saturday) and which week is a year's first: 1 the one with 1 January,
// 2 the first with four days, 3 the first full one.
struct WeekRules {
  int first_day = 1;
  int first_week = 1;
};

// 1 for the rules' first day of the week.
int weekday_by(std::int64_t serial, const WeekRules& rules);
// 1 to 53. Days before the first week belong to the last one of the year before.
int week_of_year(std::int64_t serial, const WeekRules& rules);

// `count` intervals later. A month's end stays within the month: one month after 31 January is the last of February.
// nullopt beyond the years 100 to 9999.
std::optional<double> add_intervals(double days, Interval interval, double count);

// How many interval boundaries lie between the two; for kWeekday whole weeks. Negative when `to` is before `from`.
std::int64_t intervals_between(double from, double to, Interval interval, const WeekRules& rules);

int date_part(double days, Interval interval, const WeekRules& rules);

}  // namespace pv::vbscript
