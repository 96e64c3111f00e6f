#include "vbscript/civil_dates.h"

#include <cmath>

namespace pv::vbscript {

namespace {

std::int64_t floor_divide(std::int64_t dividend, std::int64_t divisor) {
  const std::int64_t quotient = dividend / divisor;
  return dividend % divisor < 0 ? quotient - 1 : quotient;
}

constexpr std::int64_t kDaysPerEra = 146097;      // 400 years
constexpr std::int64_t kSerialOfMarch0 = 693899;  // serial 0, counted from 1 March of the year 0

}  // namespace

bool is_leap_year(std::int64_t year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int days_in_month(std::int64_t year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && is_leap_year(year) ? 29 : kDays[month - 1];
}

// Years begin in March here, so that the leap day is the last of its year.
std::int64_t serial_from_civil(std::int64_t year, std::int64_t month, std::int64_t day) {
  const std::int64_t months = year * 12 + (month - 1) - 2;
  const std::int64_t march_year = floor_divide(months, 12);
  const std::int64_t march_month = months - march_year * 12;
  const std::int64_t era = floor_divide(march_year, 400);
  const std::int64_t year_of_era = march_year - era * 400;
  const std::int64_t day_of_year = (153 * march_month + 2) / 5;
  const std::int64_t day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * kDaysPerEra + day_of_era - kSerialOfMarch0 + (day - 1);
}

CivilDate civil_from_serial(std::int64_t serial) {
  const std::int64_t days = serial + kSerialOfMarch0;
  const std::int64_t era = floor_divide(days, kDaysPerEra);
  const std::int64_t day_of_era = days - era * kDaysPerEra;
  const std::int64_t year_of_era = (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const std::int64_t day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const std::int64_t march_month = (5 * day_of_year + 2) / 153;
  const auto day = static_cast<int>(day_of_year - (153 * march_month + 2) / 5 + 1);
  const auto month = static_cast<int>(march_month < 10 ? march_month + 3 : march_month - 9);
  const auto year = static_cast<int>(year_of_era + era * 400 + (month <= 2 ? 1 : 0));
  return {year, month, day};
}

// 30 December 1899 was a Saturday.
int weekday_of(std::int64_t serial) {
  return static_cast<int>(serial - 1 - floor_divide(serial - 1, 7) * 7) + 1;
}

DayAndSecond split_date(double days) {
  const double whole = std::trunc(days);
  DayAndSecond parts;
  parts.serial = static_cast<std::int64_t>(whole);
  parts.second = static_cast<std::int64_t>(std::floor(std::fabs(days - whole) * 86400.0 + 0.5));
  if (parts.second == kSecondsPerDay) {
    parts.second = 0;
    ++parts.serial;
  }
  return parts;
}

double join_date(std::int64_t serial, std::int64_t second) {
  const std::int64_t carry = floor_divide(second, kSecondsPerDay);
  serial += carry;
  const double fraction = static_cast<double>(second - carry * kSecondsPerDay) / 86400.0;
  return serial >= 0 ? static_cast<double>(serial) + fraction : static_cast<double>(serial) - fraction;
}

bool is_valid_date(double days) {
  return days > static_cast<double>(kFirstSerial - 1) && days < static_cast<double>(kLastSerial + 1);
}

std::int64_t full_year(std::int64_t year) {
  if (year < 0 || year > 99) return year;
  return year < 30 ? year + 2000 : year + 1900;
}

}  // namespace pv::vbscript
