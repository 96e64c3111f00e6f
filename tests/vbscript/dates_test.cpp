#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <string>

#include "vbscript/builtins.h"
#include "vbscript/civil_dates.h"
#include "vbscript/clock.h"
#include "vbscript/conversions.h"
#include "vbscript/date_intervals.h"
#include "vbscript/engine.h"

namespace pv::vbscript {
namespace {

// The calendar day by day, from the first date to the last.
TEST(CivilDates, EveryDayOfTheCalendar) {
  CivilDate day{100, 1, 1};
  int weekday = 6;  // Friday
  for (std::int64_t serial = kFirstSerial; serial <= kLastSerial; ++serial) {
    const CivilDate found = civil_from_serial(serial);
    ASSERT_TRUE(found.year == day.year && found.month == day.month && found.day == day.day) << serial;
    ASSERT_EQ(serial_from_civil(day.year, day.month, day.day), serial);
    ASSERT_EQ(weekday_of(serial), weekday);
    weekday = weekday % 7 + 1;
    if (++day.day <= days_in_month(day.year, day.month)) continue;
    day.day = 1;
    if (++day.month <= 12) continue;
    day.month = 1;
    ++day.year;
  }
  EXPECT_EQ(day.year, 10000);
}

TEST(CivilDates, EveryTextIsReadBack) {
  for (std::int64_t serial = kFirstSerial; serial <= kLastSerial; serial += 97) {
    const double days = join_date(serial, (serial * 7919 % kSecondsPerDay + kSecondsPerDay) % kSecondsPerDay);
    ASSERT_EQ(date_in(date_text(days)), days) << date_text(days).view();
    ASSERT_EQ(date_in(short_date_text(days)), std::trunc(days)) << short_date_text(days).view();
  }
}

// A week is found by walking: its number goes up where a week begins, and starts again with the year's first week.
TEST(DateIntervals, WeeksGoOnWithoutAGap) {
  for (int first_day = 1; first_day <= 7; ++first_day) {
    for (const int first_week : {2, 3}) {
      const WeekRules rules{first_day, first_week};
      int before = week_of_year(36525, rules);  // 31 December 1999
      for (std::int64_t serial = 36526; serial < 36526 + 30 * 366; ++serial) {
        const int week = week_of_year(serial, rules);
        const bool begins = weekday_by(serial, rules) == 1;
        ASSERT_TRUE(begins ? week == before + 1 || (week == 1 && before >= 52) : week == before) << serial;
        before = week;
      }
    }
  }
}

LocalTime fixed_clock() {
  return {2004, 2, 29, 15, 5, 10, 250};
}

// Puts the engine's own clock back.
struct FixedClock {
  FixedClock() { set_clock(fixed_clock); }
  ~FixedClock() { set_clock(nullptr); }
};

Value call(Engine& engine, std::string_view name) {
  return find_builtin(name)->call(engine, {});
}

TEST(Clock, TheHostsClockIsTheOneScriptsSee) {
  const FixedClock fixed;
  Engine engine;
  EXPECT_EQ(date_text(call(engine, "now").real()).view(), "2/29/2004 3:05:10 PM");
  EXPECT_EQ(date_text(call(engine, "date").real()).view(), "2/29/2004");
  EXPECT_EQ(date_text(call(engine, "time").real()).view(), "3:05:10 PM");
  EXPECT_EQ(call(engine, "timer").real(), 54310.25);
  EXPECT_EQ(date_text(date_in("29 Feb").value()).view(), "2/29/2004");
  EXPECT_EQ(date_text(date_in("2/29").value()).view(), "2/29/2004");
}

TEST(Clock, WithoutAHostItIsTheCLibrarysLocalTime) {
  for (int attempt = 0; attempt < 3; ++attempt) {  // the second may change in between
    const std::time_t before = std::time(nullptr);
    const LocalTime time = local_time();
    if (std::time(nullptr) != before) continue;
    const std::tm expected = *std::localtime(&before);
    EXPECT_EQ(time.year, expected.tm_year + 1900);
    EXPECT_EQ(time.month, expected.tm_mon + 1);
    EXPECT_EQ(time.day, expected.tm_mday);
    EXPECT_EQ(time.hour, expected.tm_hour);
    EXPECT_EQ(time.minute, expected.tm_min);
    EXPECT_EQ(time.second, expected.tm_sec);
    return;
  }
}

}  // namespace
}  // namespace pv::vbscript
