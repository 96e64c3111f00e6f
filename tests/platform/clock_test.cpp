#include "platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>

#include "platform/environment.h"

namespace pv {
namespace {

using platform::local_time;
using platform::ZoneSettings;

constexpr std::int64_t kWinter = 1705321815;  // 15 January 2024, 12:30:15 UTC, a Monday
constexpr std::int64_t kSummer = 1720960215;  // 14 July 2024, 12:30:15 UTC, a Sunday

class ClockTest : public testing::Test {
 protected:
  ~ClockTest() override {
    platform::set_time_of_day_for_test(-1);
    use_zone("UTC0");
  }
  static void use_zone(const char* zone) {
    platform::set_environment_variable("TZ", zone);
    local_time(ZoneSettings::kReadAgain);
  }
};

struct ZoneCase {
  const char* zone;
  std::int64_t time;
  int day, hour, minute;  // local
  int bias, daylight_bias;
};

constexpr ZoneCase kZones[] = {
    {"UTC0", kWinter, 15, 12, 30, 0, 0},
    {"IST-5:30", kWinter, 15, 18, 0, -330, 0},
    {"EST5EDT,M3.2.0,M11.1.0", kWinter, 15, 7, 30, 300, 0},
    {"EST5EDT,M3.2.0,M11.1.0", kSummer, 14, 8, 30, 300, -60},
    {"CET-1CEST,M3.5.0,M10.5.0/3", kSummer, 14, 14, 30, -60, -60},
    {"XXX-14", kSummer, 15, 2, 30, -840, 0},
    {"NST3:30", kWinter, 15, 9, 0, 210, 0},
};

TEST_F(ClockTest, LocalTimeAndBiasFollowTheZone) {
  for (const ZoneCase& c : kZones) {
    platform::set_time_of_day_for_test(c.time);
    use_zone(c.zone);
    const platform::LocalTime time = local_time();
    EXPECT_EQ(time.day, c.day) << c.zone;
    EXPECT_EQ(time.hour, c.hour) << c.zone;
    EXPECT_EQ(time.minute, c.minute) << c.zone;
    const platform::ZoneBias bias = platform::zone_bias();
    EXPECT_EQ(bias.bias, c.bias) << c.zone;
    EXPECT_EQ(bias.standard_bias, 0) << c.zone;
    EXPECT_EQ(bias.daylight_bias, c.daylight_bias) << c.zone;
    EXPECT_EQ(bias.daylight, c.daylight_bias != 0) << c.zone;
  }
}

TEST_F(ClockTest, PartsCountAsPeopleDo) {
  use_zone("UTC0");
  platform::set_time_of_day_for_test(kWinter);
  const platform::LocalTime time = local_time();
  EXPECT_EQ(time.year, 2024);
  EXPECT_EQ(time.month, 1);
  EXPECT_EQ(time.day_of_week, 1);
  EXPECT_EQ(time.second, 15);
  EXPECT_EQ(platform::unix_seconds(), kWinter);
}

std::int64_t as_if_utc(const platform::LocalTime& time) {
  using namespace std::chrono;
  const sys_days date = year(time.year) / time.month / time.day;
  return (date + hours(time.hour) + minutes(time.minute) + seconds(time.second)).time_since_epoch().count();
}

// Of the system's own time, whatever its zone is.
TEST_F(ClockTest, LocalTimeAndBiasGiveTheTimeThatUnixCounts) {
  const std::int64_t before = platform::unix_seconds();
  const std::int64_t local = as_if_utc(local_time());
  const std::int64_t after = platform::unix_seconds();
  const platform::ZoneBias zone = platform::zone_bias();
  const std::int64_t bias = zone.bias + (zone.daylight ? zone.daylight_bias : zone.standard_bias);
  const std::int64_t utc = local + bias * 60;
  EXPECT_LE(before, utc);
  EXPECT_LE(utc, after);
}

TEST_F(ClockTest, AChangedZoneCountsOnceItIsReadAgain) {
  use_zone("UTC0");
  platform::set_time_of_day_for_test(kWinter);
  platform::set_environment_variable("TZ", "IST-5:30");
  EXPECT_EQ(local_time(ZoneSettings::kAsKnown).hour, 12);
  EXPECT_EQ(local_time(ZoneSettings::kReadAgain).hour, 18);
}

}  // namespace
}  // namespace pv
