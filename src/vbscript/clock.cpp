#include "vbscript/clock.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <ctime>

#include "vbscript/civil_dates.h"

namespace pv::vbscript {

namespace {

constexpr std::int64_t kUnixEpochDay = 25569;  // 1 January 1970

constinit std::atomic<ClockFunction> host_clock{nullptr};

// The fields of `seconds` since the Unix epoch, without a zone.
LocalTime broken_down(std::int64_t seconds) {
  std::int64_t day = seconds / kSecondsPerDay;
  auto rest = static_cast<int>(seconds % kSecondsPerDay);
  if (rest < 0) {
    rest += static_cast<int>(kSecondsPerDay);
    --day;
  }
  const CivilDate date = civil_from_serial(day + kUnixEpochDay);
  return {date.year, date.month, date.day, rest / 3600, rest / 60 % 60, rest % 60, 0};
}

std::tm as_tm(const LocalTime& time, int daylight_saving) {
  std::tm result{};
  result.tm_year = time.year - 1900;
  result.tm_mon = time.month - 1;
  result.tm_mday = time.day;
  result.tm_hour = time.hour;
  result.tm_min = time.minute;
  result.tm_sec = time.second;
  result.tm_isdst = daylight_saving;
  return result;
}

// std::localtime and std::gmtime share one buffer with the whole process, and a lock of ours would not keep the host's
// other threads from it. std::mktime touches nothing but its argument: a local time is guessed, first the one of UTC,
// and set right by what std::mktime makes of it, once as standard and once as summer time, until it leads to `now`.
LocalTime without_shared_buffer(std::time_t now) {
  constexpr int kGuesses = 3;  // the third one is needed where a zone was moved that day
  for (const int daylight_saving : {0, 1}) {
    std::int64_t offset = 0;
    for (int guess = 0; guess < kGuesses; ++guess) {
      const LocalTime local = broken_down(now + offset);
      std::tm fields = as_tm(local, daylight_saving);
      const std::int64_t reached = std::mktime(&fields);
      if (reached == now && fields.tm_isdst == daylight_saving && fields.tm_hour == local.hour) return local;
      offset += now - reached;
    }
  }
  return broken_down(now);
}

LocalTime own_clock() {
  using std::chrono::floor;
  const auto now = std::chrono::system_clock::now();
  const auto second = floor<std::chrono::seconds>(now);
  LocalTime time = without_shared_buffer(std::chrono::system_clock::to_time_t(second));
  time.millisecond = static_cast<int>(floor<std::chrono::milliseconds>(now - second).count());
  return time;
}

}  // namespace

void set_clock(ClockFunction clock) {
  host_clock.store(clock);
}

LocalTime local_time() {
  const ClockFunction clock = host_clock.load();
  return clock != nullptr ? clock() : own_clock();
}

double seconds_since_midnight(const LocalTime& time) {
  return time.hour * 3600 + time.minute * 60 + time.second + time.millisecond / 1000.0;
}

}  // namespace pv::vbscript
