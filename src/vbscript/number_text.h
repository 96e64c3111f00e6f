// Numbers in texts: what a text holds, before it is known which type is wanted of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "vbscript/characters.h"

namespace pv::vbscript {

// What may stand around a number or between the parts of a date, the no-break space of Windows-1252 included.
constexpr bool is_space(char byte) {
  return is_blank(byte) || is_line_end(byte) || byte == '\xA0';
}

// The significant digits of a decimal number and where its point stands. More digits than can change a double are left
// out, so a text of a megabyte costs no memory.
struct DecimalDigits {
  // 767 digits decide how any double rounds; one more stands for those left out.
  static constexpr std::size_t kCapacity = 768;

  bool negative = false;
  std::size_t count = 0;               // without leading zeros; 0: the number is 0
  std::int64_t point = 0;              // the value is 0.d1d2d3… times ten to the power of this
  std::array<char, kCapacity> digits;  // '0' to '9'; the first `count` are set
};

// '0' outside the digits held, on both sides.
char digit_at(const DecimalDigits& decimal, std::int64_t index);

// A text that holds a number: either decimal, or the bits of an &H or &O number.
struct NumberInText {
  bool is_bits = false;
  std::uint64_t bits = 0;
  DecimalDigits decimal;
};

// False when the text holds no number.
[[nodiscard]] bool parse_number(std::string_view text, NumberInText& number);

// nullopt: beyond the range of a double.
std::optional<double> double_of(const NumberInText& number);

// Ten-thousandths, rounded half to even; nullopt: beyond the range of Currency.
std::optional<std::int64_t> currency_of(const NumberInText& number);

// The digits of a finite real number, at most `significant` of them (1 to 17), correctly rounded, without trailing
// zeros.
void digits_of(double real, int significant, DecimalDigits& decimal);

// The digits of a whole number, divided by ten to the power of `decimals`.
void digits_of(std::int64_t number, int decimals, DecimalDigits& decimal);

// Rounds to `places` places behind the point, half away from zero, as the Format functions do. The result may have
// fewer.
void round_digits(DecimalDigits& decimal, std::int64_t places);

}  // namespace pv::vbscript
