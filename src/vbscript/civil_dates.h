// Dates as numbers: days since 30 December 1899, the time of day as their fraction. Before that day the fraction still
// runs forward in time: -1.25 is 29 December 1899, 6:00.
#pragma once

#include <cstdint>
#include <optional>

namespace pv::vbscript {

inline constexpr std::int64_t kSecondsPerDay = 86400;
inline constexpr std::int64_t kFirstSerial = -657434;  // 1 January 100
inline constexpr std::int64_t kLastSerial = 2958465;   // 31 December 9999

struct CivilDate {
  int year = 1899;
  int month = 12;  // 1 to 12
  int day = 30;    // 1 to 31
};

// A date's whole day, and its seconds since midnight rounded to a whole one.
struct DayAndSecond {
  std::int64_t serial = 0;
  std::int64_t second = 0;  // 0 to 86399
};

bool is_leap_year(std::int64_t year);
int days_in_month(std::int64_t year, int month);

// `month` may lie outside 1 to 12 and `day` outside the month; they run on into the neighbours.
std::int64_t serial_from_civil(std::int64_t year, std::int64_t month, std::int64_t day);
CivilDate civil_from_serial(std::int64_t serial);
int weekday_of(std::int64_t serial);  // 1 Sunday to 7 Saturday

DayAndSecond split_date(double days);
// `second` may lie outside the day; it runs on into the neighbours.
double join_date(std::int64_t serial, std::int64_t second);

bool is_valid_date(double days);

// "2004" stands for itself, "04" and "99" for 2004 and 1999: two digits mean 1930 to 2029.
std::int64_t full_year(std::int64_t year);

}  // namespace pv::vbscript
