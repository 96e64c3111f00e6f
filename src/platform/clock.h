// Time of day, the local zone, and a clock that only goes forward.
#pragma once

#include <cstdint>

namespace pv::platform {

// A local date and time.
struct LocalTime {
  int year = 1970;
  int month = 1;        // 1 to 12
  int day = 1;          // 1 to 31
  int day_of_week = 4;  // 0 is Sunday
  int hour = 0;
  int minute = 0;
  int second = 0;
};

enum class ZoneSettings {
  kAsKnown,
  kReadAgain,  // the zone is taken from the environment anew first
};

LocalTime local_time(ZoneSettings zone = ZoneSettings::kAsKnown);

// The local zone at this moment, in minutes: UTC = local time + bias + (daylight ? daylight_bias : standard_bias).
struct ZoneBias {
  int bias = 0;
  int standard_bias = 0;
  int daylight_bias = 0;
  bool daylight = false;
};
ZoneBias zone_bias();

// Seconds since 1 January 1970 UTC.
std::int64_t unix_seconds();

// Milliseconds on a clock that is never set back; its zero means nothing.
std::int64_t process_clock_ms();

// Test hook: the time of day that local_time, zone_bias and unix_seconds take for now, in seconds since 1970 UTC; a
// negative value brings the system's back. Any thread may set it.
void set_time_of_day_for_test(std::int64_t seconds);

}  // namespace pv::platform
