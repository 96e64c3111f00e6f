// One type to another, as CInt, CStr and the operators do it. All raise 13 (Type mismatch), 6 (Overflow) or 94 (Invalid
// use of Null) as VBScript does; objects give their default property (error 438 without one, 91 for Nothing).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "vbscript/value.h"

namespace pv::vbscript {

class Engine;

// The text of a number or a date, without an allocation.
class ShortText {
 public:
  static constexpr std::size_t kCapacity = 48;  // bytes; the longest is a date with its time

  ShortText() = default;
  explicit ShortText(std::string_view text) { append(text); }
  void append(std::string_view text) {
    for (const char c : text) append(c);
  }
  void append(char c) {
    if (length_ < kCapacity) bytes_[length_++] = c;
  }
  std::string_view view() const { return {bytes_.data(), length_}; }
  operator std::string_view() const { return view(); }

 private:
  std::array<char, kCapacity> bytes_;
  std::size_t length_ = 0;
};

// Keeps the text of a value that is only looked at: what text_of gives lives as long as this and the value.
struct TextStorage {
  ShortText digits;
  Value kept;
};

// The value of an object's default property; any other value as it is. Never gives an object.
Value plain_value(Engine& engine, const Value& value);
// The same without touching a reference count where `value` is no object. `storage` holds the result if it is one.
const Value& plain_value(Engine& engine, const Value& value, Value& storage);

// A number of the type that it has, or Null: a text becomes a Double, Empty and Boolean an Integer. What Abs, Int, Fix,
// Round and For count with.
Value number_argument(Engine& engine, const Value& value);

std::int16_t to_integer(Engine& engine, const Value& value);  // half goes to the even neighbour
std::int32_t to_long(Engine& engine, const Value& value);
std::uint8_t to_byte(Engine& engine, const Value& value);
double to_double(Engine& engine, const Value& value);
float to_single(Engine& engine, const Value& value);
std::int64_t to_currency(Engine& engine, const Value& value);  // ten-thousandths
double to_date(Engine& engine, const Value& value);            // days since 30 December 1899
bool to_boolean(Engine& engine, const Value& value);

// The text of a value as CStr gives it: a kString Value that shares the text when it is one already. Null raises 94.
Value to_text(Engine& engine, const Value& value);
// The same for a value whose text is only looked at. `storage` holds it where the value has none of its own.
std::string_view text_of(Engine& engine, const Value& value, Value& storage);
std::string_view text_of(Engine& engine, const Value& value, TextStorage& storage);

// Counts the reading of a text, byte by byte, towards the time limit.
void charge_reading(Engine& engine, std::string_view text);

// A real number as a whole one, half to the even neighbour; raises 6 beyond the type.
std::int32_t round_to_long(double real);
// Ten-thousandths of a real number, rounded the same way; raises 6 beyond Currency.
std::int64_t round_to_currency(double real);
inline constexpr double kCurrencyScale = 10000.0;

// The number that a text holds by CDbl's rules (blanks around it, sign, thousands separators, &H and &O, exponent, a
// currency sign, parentheses for negative); nullopt when it holds none.
std::optional<double> number_in(std::string_view text);

// "True" or "False" in any case.
std::optional<bool> boolean_in(std::string_view text);

// The date that a text holds by CDate's rules, English (United States): "2/25/2004 3:05:10 PM", "February 25, 2004",
// "25-Feb-04", "2004-02-25 15:05", "3 PM"; nullopt when it holds none. A date without a year is one of this year.
std::optional<double> date_in(std::string_view text);

// A number as CStr writes it: 15 significant digits for doubles, 7 for singles, "1E+15"; -0 is "0".
ShortText double_text(double real);
ShortText single_text(double real);
ShortText currency_text(std::int64_t ten_thousandths);
ShortText whole_number_text(std::int64_t number);
// "2/25/2004", "2/25/2004 3:05:10 PM", "3:05:10 PM" for a day of 0.
ShortText date_text(double days);
ShortText short_date_text(double days);  // "2/25/2004"
ShortText long_date_text(double days);   // "Wednesday, February 25, 2004"
ShortText long_time_text(double days);   // "3:05:10 PM"
ShortText short_time_text(double days);  // "15:05"

// English names; `month` 1 to 12, `weekday` 1 (Sunday) to 7.
std::string_view month_name(int month);
std::string_view weekday_name(int weekday);

}  // namespace pv::vbscript
