#include "vbscript/number_literal.h"

#include <charconv>
#include <limits>
#include <system_error>

#include "vbscript/characters.h"

namespace pv::vbscript {
namespace {

std::size_t skip_digits(std::string_view text, std::size_t from) {
  while (from < text.size() && is_digit(text[from])) ++from;
  return from;
}

// The end of "E+5" at `from`; `from` itself where no exponent stands.
std::size_t skip_exponent(std::string_view text, std::size_t from) {
  if (from >= text.size() || lower(text[from]) != 'e') return from;
  std::size_t digits = from + 1;
  if (digits < text.size() && (text[digits] == '+' || text[digits] == '-')) ++digits;
  const std::size_t end = skip_digits(text, digits);
  return end == digits ? from : end;
}

// Whether a number that no double holds is too small for it rather than too large.
bool is_tiny(std::string_view mantissa, std::string_view exponent) {
  long long power = 0;
  if (exponent.size() > 1) {
    const bool negative = exponent[1] == '-';
    const std::string_view digits = exponent.substr(exponent[1] == '+' || negative ? 2 : 1);
    if (std::from_chars(digits.data(), digits.data() + digits.size(), power).ec != std::errc()) return negative;
    if (negative) power = -power;
  }
  const std::size_t point = mantissa.find('.');
  const std::size_t first = mantissa.find_first_not_of("0.");
  if (first == std::string_view::npos) return true;
  const auto whole = static_cast<long long>(point == std::string_view::npos ? mantissa.size() : point);
  return whole - static_cast<long long>(first) + power < 0;
}

NumberLiteral read_real(std::string_view mantissa, std::string_view exponent) {
  NumberLiteral literal;
  literal.length = mantissa.size() + exponent.size();
  const char* const begin = mantissa.data();
  // from_chars takes no "+", but only at the very beginning, where there is none.
  const auto [end, error] = std::from_chars(begin, begin + literal.length, literal.real);
  literal.valid = error == std::errc() && end == begin + literal.length;
  if (error == std::errc::result_out_of_range) {
    literal.valid = is_tiny(mantissa, exponent);
    literal.real = 0;
  }
  return literal;
}

bool read_whole(std::string_view digits, NumberLiteral& literal) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc()) return false;
  const bool is_integer = number <= std::numeric_limits<std::int16_t>::max();
  literal = {true, digits.size(), is_integer ? TokenKind::kInteger : TokenKind::kLong, number, 0};
  return true;
}

}  // namespace

NumberLiteral read_number(std::string_view text) {
  std::size_t mantissa = skip_digits(text, 0);
  const std::size_t whole = mantissa;
  if (mantissa < text.size() && text[mantissa] == '.') mantissa = skip_digits(text, mantissa + 1);
  const std::size_t end = skip_exponent(text, mantissa);
  NumberLiteral literal;
  if (whole == end && read_whole(text.substr(0, end), literal)) return literal;
  return read_real(text.substr(0, mantissa), text.substr(mantissa, end - mantissa));
}

NumberLiteral read_radix_number(std::string_view text) {
  const unsigned base = lower(text[1]) == 'h' ? 16 : 8;
  NumberLiteral literal;
  literal.valid = true;
  std::uint64_t number = 0;
  std::size_t end = 2;
  for (; end < text.size() && digit_value(text[end]) < base; ++end) {
    number = number * base + digit_value(text[end]);
    if (number > std::numeric_limits<std::uint32_t>::max()) return {};
  }
  const bool is_long = end < text.size() && text[end] == '&';
  literal.length = is_long ? end + 1 : end;
  if (is_long || number > std::numeric_limits<std::uint16_t>::max()) {
    literal.kind = TokenKind::kLong;
    literal.number = static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
  } else {
    literal.kind = TokenKind::kInteger;
    literal.number = static_cast<std::int16_t>(static_cast<std::uint16_t>(number));
  }
  return literal;
}

}  // namespace pv::vbscript
