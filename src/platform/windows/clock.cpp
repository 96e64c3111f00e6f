#include "platform/clock.h"

#include <windows.h>

#include <atomic>
#include <ctime>

namespace pv::platform {
namespace {

constinit std::atomic<std::int64_t> time_for_test = -1;

// The system tells its own time only, so a test's time and its zone come from the C run-time, which also lets the test
// choose the zone.
std::tm local_parts(std::int64_t seconds) {
  const auto time = static_cast<__time64_t>(seconds);
  std::tm parts{};
  ::_localtime64_s(&parts, &time);
  return parts;
}

LocalTime local_time_of_test(std::int64_t seconds) {
  const std::tm parts = local_parts(seconds);
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_wday,
          parts.tm_hour,        parts.tm_min,     parts.tm_sec};
}

// How much of the whole offset daylight saving adds the C run-time does not say; an hour is assumed.
ZoneBias zone_bias_of_test(std::int64_t seconds) {
  std::tm parts = local_parts(seconds);
  const bool daylight = parts.tm_isdst > 0;
  const int daylight_bias = daylight ? -60 : 0;
  const auto offset = static_cast<int>((seconds - ::_mkgmtime64(&parts)) / 60);
  return {offset - daylight_bias, 0, daylight_bias, daylight};
}

}  // namespace

LocalTime local_time(ZoneSettings zone) {
  if (zone == ZoneSettings::kReadAgain) ::_tzset();
  const std::int64_t test = time_for_test.load(std::memory_order_relaxed);
  if (test >= 0) return local_time_of_test(test);
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wDayOfWeek, now.wHour, now.wMinute, now.wSecond};
}

ZoneBias zone_bias() {
  const std::int64_t test = time_for_test.load(std::memory_order_relaxed);
  if (test >= 0) return zone_bias_of_test(test);
  TIME_ZONE_INFORMATION zone{};
  const DWORD state = ::GetTimeZoneInformation(&zone);
  if (state == TIME_ZONE_ID_INVALID) return {};
  // A zone without daylight saving has no standard bias either, whatever its record holds.
  const int standard_bias = state == TIME_ZONE_ID_UNKNOWN ? 0 : static_cast<int>(zone.StandardBias);
  return {static_cast<int>(zone.Bias), standard_bias, static_cast<int>(zone.DaylightBias),
          state == TIME_ZONE_ID_DAYLIGHT};
}

std::int64_t unix_seconds() {
  const std::int64_t seconds = time_for_test.load(std::memory_order_relaxed);
  return seconds >= 0 ? seconds : static_cast<std::int64_t>(::_time64(nullptr));
}

std::int64_t process_clock_ms() {
  return static_cast<std::int64_t>(::GetTickCount64());
}

void set_time_of_day_for_test(std::int64_t seconds) {
  time_for_test.store(seconds, std::memory_order_relaxed);
}

}  // namespace pv::platform
