#include "platform/clock.h"

#include <atomic>
#include <ctime>
#include <mutex>

namespace pv::platform {
namespace {

constinit std::atomic<std::int64_t> time_for_test = -1;

// The C library takes a lock of its own in tzset; ThreadSanitizer does not see it and would report a race.
constinit std::mutex zone_mutex;

void read_zone_again() {
  const std::lock_guard lock(zone_mutex);
  ::tzset();
}

std::tm local_parts(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm parts{};
  ::localtime_r(&time, &parts);  // fails only for years beyond an int; such a clock may show any date
  return parts;
}

}  // namespace

LocalTime local_time(ZoneSettings zone) {
  if (zone == ZoneSettings::kReadAgain) read_zone_again();
  const std::tm parts = local_parts(unix_seconds());
  return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_wday,
          parts.tm_hour,        parts.tm_min,     parts.tm_sec};
}

// The system gives the whole offset of this moment. How much of it daylight saving adds it does not say; an hour is
// assumed, and the sum is right in any case.
ZoneBias zone_bias() {
  const std::tm parts = local_parts(unix_seconds());
  const bool daylight = parts.tm_isdst > 0;
  const int daylight_bias = daylight ? -60 : 0;
  return {static_cast<int>(-parts.tm_gmtoff / 60) - daylight_bias, 0, daylight_bias, daylight};
}

std::int64_t unix_seconds() {
  const std::int64_t seconds = time_for_test.load(std::memory_order_relaxed);
  return seconds >= 0 ? seconds : static_cast<std::int64_t>(std::time(nullptr));
}

std::int64_t process_clock_ms() {
  std::timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

void set_time_of_day_for_test(std::int64_t seconds) {
  time_for_test.store(seconds, std::memory_order_relaxed);
}

}  // namespace pv::platform
