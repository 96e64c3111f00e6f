#include "providers/decimal_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "common/fields.h"

namespace pv {
namespace {

constexpr std::size_t kLongestFixed = 330;  // bytes: sign, 309 digits, point and six decimals

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

std::size_t behind_digits(std::string_view text, std::size_t at) {
  while (at < text.size() && is_digit(text[at])) ++at;
  return at;
}

// The parts of a decimal number: digits, a point among or beside them, an exponent.
struct Decimal {
  std::string_view mantissa;
  std::string_view exponent;  // behind the 'e'; empty without one
  std::string_view all;
};

// `text` begins behind the sign. An empty `all`: no number.
Decimal decimal_prefix(std::string_view text) {
  const std::size_t whole = behind_digits(text, 0);
  std::size_t end = whole;
  if (end < text.size() && text[end] == '.') end = behind_digits(text, end + 1);
  if (end == 0 || text.substr(0, end) == ".") return {};
  Decimal decimal{text.substr(0, end), {}, text.substr(0, end)};
  if (end == text.size() || (text[end] != 'e' && text[end] != 'E')) return decimal;
  std::size_t digits = end + 1;
  if (digits < text.size() && (text[digits] == '-' || text[digits] == '+')) ++digits;
  const std::size_t exponent_end = behind_digits(text, digits);
  if (exponent_end == digits) return decimal;  // the 'e' of another word
  decimal.exponent = text.substr(end + 1, exponent_end - end - 1);
  decimal.all = text.substr(0, exponent_end);
  return decimal;
}

// Of a number that the type cannot hold: whether it is too large, else it is too small. Its first digit that is not 0
// stands `places` before the point, or behind it when that is negative.
bool is_too_large(const Decimal& decimal) {
  const std::size_t first = decimal.mantissa.find_first_not_of("0.");
  if (first == std::string_view::npos) return false;
  const std::size_t point = std::min(decimal.mantissa.find('.'), decimal.mantissa.size());
  const auto places = static_cast<long long>(point) - static_cast<long long>(first);
  return places + leading_number(decimal.exponent) > 0;
}

}  // namespace

double leading_decimal(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const Decimal decimal = decimal_prefix(text);
  if (decimal.all.empty()) return 0;
  double number = 0;
  const auto end = decimal.all.data() + decimal.all.size();
  if (std::from_chars(decimal.all.data(), end, number).ec != std::errc()) {
    number = is_too_large(decimal) ? std::numeric_limits<double>::max() : 0;
  }
  return negative ? -number : number;
}

std::string six_decimals(double number) {
  std::array<char, kLongestFixed> digits;
  const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed, 6);
  return {digits.data(), written.ptr};
}

}  // namespace pv
