// Dates and times as texts, English (United States).
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "vbscript/characters.h"
#include "vbscript/civil_dates.h"
#include "vbscript/clock.h"
#include "vbscript/conversions.h"
#include "vbscript/number_text.h"

namespace pv::vbscript {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};
constexpr std::size_t kAbbreviation = 3;  // letters of a short name

// 1 to 12, 0 when it is no month.
int month_in(std::string_view word) {
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (same_word(word, kMonths[i]) || same_word(word, kMonths[i].substr(0, kAbbreviation)))
      return static_cast<int>(i) + 1;
  }
  return 0;
}

// A number of the date part; `digits` tells "2004" and "0004" from "4".
struct DateNumber {
  int value = 0;
  std::size_t digits = 0;

  bool must_be_year() const { return digits > 2 || value > 31; }
  std::int64_t year() const { return full_year(value); }
};

std::optional<std::int64_t> checked_serial(std::int64_t year, int month, int day) {
  if (year < 100 || year > 9999 || month < 1 || month > 12) return std::nullopt;
  if (day < 1 || day > days_in_month(year, month)) return std::nullopt;
  return serial_from_civil(year, month, day);
}
std::optional<std::int64_t> checked_serial(DateNumber year, DateNumber month, DateNumber day) {
  if (month.must_be_year() || day.must_be_year()) return std::nullopt;
  return checked_serial(year.year(), month.value, day.value);
}

std::optional<std::int64_t> first_of(std::initializer_list<std::optional<std::int64_t>> readings) {
  for (const auto& reading : readings) {
    if (reading) return reading;
  }
  return std::nullopt;
}

// A text with a date, a time or both. The date is collected as numbers and at most one month's name, and understood
// at the end: month, day, year as Americans write it, else whatever order makes it a date.
class DateParser {
 public:
  explicit DateParser(std::string_view text) : rest_(text) {}

  std::optional<double> parse() {
    for (skip_blanks(); !rest_.empty(); skip_blanks()) {
      if (!parse_item()) return std::nullopt;
    }
    const bool has_date = numbers_ > 0 || month_ > 0;
    if (!has_date && !has_time_) return std::nullopt;
    if (!has_date) return join_date(0, second_);
    const auto serial = understand();
    if (!serial) return std::nullopt;
    return join_date(*serial, second_);
  }

 private:
  void skip_blanks() {
    while (!rest_.empty() && is_space(rest_.front())) rest_.remove_prefix(1);
  }
  char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  bool parse_item() {
    separator_ = ' ';
    if (peek() == '/' || peek() == '-' || peek() == ',') {
      if (numbers_ == 0 && month_ == 0 && !has_time_) return false;
      separator_ = peek();
      rest_.remove_prefix(1);
      skip_blanks();
    }
    if (is_digit(peek())) return parse_number();
    return is_letter(peek()) && add_month(take_word());
  }

  std::string_view take_word() {
    std::size_t length = 0;
    while (length < rest_.size() && is_letter(rest_[length])) ++length;
    const std::string_view word = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return word;
  }

  bool take_number(DateNumber& number) {
    number = {};
    for (; is_digit(peek()); rest_.remove_prefix(1)) {
      if (++number.digits > 4) return false;
      number.value = number.value * 10 + (peek() - '0');
    }
    return number.digits > 0;
  }

  // 'a' or 'p' where AM or PM stands next, and takes it; '\0' where not.
  char take_half_of_day() {
    const std::string_view before = rest_;
    skip_blanks();
    const std::string_view word = take_word();
    if (same_word(word, "am") || same_word(word, "a")) return 'a';
    if (same_word(word, "pm") || same_word(word, "p")) return 'p';
    rest_ = before;
    return '\0';
  }

  bool parse_number() {
    DateNumber number;
    if (!take_number(number)) return false;
    const std::string_view behind = rest_;
    skip_blanks();
    if (peek() == ':') return parse_time(number);
    rest_ = behind;
    if (const char half = take_half_of_day(); half != '\0') return set_time(number, {}, {}, half);
    return add_number(number);
  }

  bool take_time_part(DateNumber& part) {
    rest_.remove_prefix(1);
    skip_blanks();
    if (!take_number(part) || part.digits > 2 || part.value > 59) return false;
    const std::string_view behind = rest_;
    skip_blanks();
    if (peek() != ':') rest_ = behind;
    return true;
  }

  bool parse_time(DateNumber hour) {
    DateNumber minute;
    DateNumber second;
    if (!take_time_part(minute)) return false;
    if (peek() == ':' && !take_time_part(second)) return false;
    return peek() != ':' && set_time(hour, minute, second, take_half_of_day());
  }

  bool set_time(DateNumber hour, DateNumber minute, DateNumber second, char half) {
    if (has_time_ || separator_ == '/' || separator_ == '-') return false;
    if (hour.digits > 2 || hour.value > 23 || (half == 'a' && hour.value > 12)) return false;
    if (half == 'a' && hour.value == 12) hour.value = 0;
    if (half == 'p' && hour.value < 12) hour.value += 12;
    second_ = hour.value * 3600 + minute.value * 60 + second.value;
    return has_time_ = true;
  }

  bool add_number(DateNumber number) {
    if (numbers_ == number_.size()) return false;
    if (numbers_ > 0 && month_ == 0 && separator_ != '/' && separator_ != '-') only_with_month_ = true;
    number_[numbers_++] = number;
    return true;
  }
  bool add_month(std::string_view word) {
    if (month_ != 0) return false;
    month_ = month_in(word);
    return month_ != 0;
  }

  std::optional<std::int64_t> understand() const {
    if (month_ != 0) return understand_named_month();
    if (only_with_month_) return std::nullopt;
    const auto [a, b, c] = number_;
    if (numbers_ == 2) return understand_two(a, b);
    if (numbers_ != 3) return std::nullopt;
    if (a.must_be_year()) return first_of({checked_serial(a, b, c), checked_serial(a, c, b)});
    return first_of({checked_serial(c, a, b), checked_serial(c, b, a), checked_serial(a, b, c)});
  }

  // A day of this year, else the first of a month.
  static std::optional<std::int64_t> understand_two(DateNumber a, DateNumber b) {
    const DateNumber this_year{local_time().year, 4};
    const DateNumber first{1, 1};
    return first_of({checked_serial(this_year, a, b), checked_serial(this_year, b, a), checked_serial(b, a, first),
                     checked_serial(a, b, first)});
  }

  std::optional<std::int64_t> understand_named_month() const {
    const DateNumber month{month_, 2};
    const auto [a, b, c] = number_;
    if (numbers_ == 2) return first_of({checked_serial(b, month, a), checked_serial(a, month, b)});
    if (numbers_ != 1) return std::nullopt;
    return first_of({checked_serial({local_time().year, 4}, month, a), checked_serial(a, month, {1, 1})});
  }

  std::string_view rest_;
  char separator_ = ' ';  // in front of the item being read
  std::array<DateNumber, 3> number_{};
  std::size_t numbers_ = 0;
  int month_ = 0;                 // 0: none named
  bool only_with_month_ = false;  // numbers with nothing but blanks or commas between them
  bool has_time_ = false;
  std::int64_t second_ = 0;
};

void append_two(ShortText& text, std::int64_t number) {
  if (number < 10) text.append('0');
  text.append(whole_number_text(number));
}

void append_short_date(ShortText& text, std::int64_t serial) {
  const CivilDate date = civil_from_serial(serial);
  text.append(whole_number_text(date.month));
  text.append('/');
  text.append(whole_number_text(date.day));
  text.append('/');
  text.append(whole_number_text(date.year));
}

void append_long_time(ShortText& text, std::int64_t second) {
  const std::int64_t hour = second / 3600;
  text.append(whole_number_text(hour % 12 == 0 ? 12 : hour % 12));
  text.append(':');
  append_two(text, second / 60 % 60);
  text.append(':');
  append_two(text, second % 60);
  text.append(hour < 12 ? " AM" : " PM");
}

}  // namespace

std::string_view month_name(int month) {
  return kMonths[static_cast<std::size_t>(month - 1)];
}
std::string_view weekday_name(int weekday) {
  return kWeekdays[static_cast<std::size_t>(weekday - 1)];
}

std::optional<double> date_in(std::string_view text) {
  return DateParser(text).parse();
}

ShortText date_text(double days) {
  const DayAndSecond parts = split_date(days);
  ShortText text;
  if (parts.serial != 0) append_short_date(text, parts.serial);
  if (parts.serial != 0 && parts.second != 0) text.append(' ');
  if (parts.serial == 0 || parts.second != 0) append_long_time(text, parts.second);
  return text;
}

ShortText short_date_text(double days) {
  ShortText text;
  append_short_date(text, split_date(days).serial);
  return text;
}

ShortText long_date_text(double days) {
  const std::int64_t serial = split_date(days).serial;
  const CivilDate date = civil_from_serial(serial);
  ShortText text(weekday_name(weekday_of(serial)));
  text.append(", ");
  text.append(month_name(date.month));
  text.append(' ');
  text.append(whole_number_text(date.day));
  text.append(", ");
  text.append(whole_number_text(date.year));
  return text;
}

ShortText long_time_text(double days) {
  ShortText text;
  append_long_time(text, split_date(days).second);
  return text;
}

ShortText short_time_text(double days) {
  const std::int64_t second = split_date(days).second;
  ShortText text;
  append_two(text, second / 3600);
  text.append(':');
  append_two(text, second / 60 % 60);
  return text;
}

}  // namespace pv::vbscript
