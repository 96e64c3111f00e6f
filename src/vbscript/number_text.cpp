#include "vbscript/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "vbscript/characters.h"
#include "vbscript/conversions.h"

namespace pv::vbscript {

namespace {

constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;
constexpr std::int64_t kFarExponent = 100'000'000;  // any larger one is 0 or too large whatever the digits are

// A number in a text, piece by piece:  [( ] [sign] [$] digits[,digits][.digits] [E[sign]digits] [$] [sign] [ )]
class NumberParser {
 public:
  NumberParser(std::string_view text, NumberInText& number) : rest_(text), number_(number) {}

  bool parse() {
    skip_blanks();
    if (take('&')) return parse_bits();
    parse_prefix();
    if (!parse_digits() || !parse_exponent()) return false;
    if (!parse_suffix()) return false;
    number_.decimal.negative = minus_ || parenthesis_;
    return true;
  }

 private:
  char peek() const { return rest_.empty() ? '\0' : rest_.front(); }
  bool take(char c) {
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void skip_blanks() {
    while (!rest_.empty() && is_space(rest_.front())) rest_.remove_prefix(1);
  }

  // "&HFF", "&O17", "&17": up to 64 bits, and the "&" behind that marks a Long in a program.
  bool parse_bits() {
    const bool hex = lower(peek()) == 'h';
    if (hex || lower(peek()) == 'o') rest_.remove_prefix(1);
    const char* const end = rest_.data() + rest_.size();
    const auto [stop, error] = std::from_chars(rest_.data(), end, number_.bits, hex ? 16 : 8);
    if (error != std::errc{}) return false;
    rest_.remove_prefix(static_cast<std::size_t>(stop - rest_.data()));
    take('&');
    skip_blanks();
    number_.is_bits = true;
    return rest_.empty();
  }

  bool take_sign() {
    if (sign_ || parenthesis_ || (peek() != '-' && peek() != '+')) return false;
    minus_ = peek() == '-';
    rest_.remove_prefix(1);
    return sign_ = true;
  }
  bool take_currency_sign() {
    if (currency_ || !take('$')) return false;
    return currency_ = true;
  }
  bool take_parenthesis() {
    if (sign_ || parenthesis_ || !take('(')) return false;
    return parenthesis_ = open_ = true;
  }
  bool close_parenthesis() {
    if (!open_ || !take(')')) return false;
    open_ = false;
    return true;
  }

  void parse_prefix() {
    while (take_sign() || take_currency_sign() || take_parenthesis()) skip_blanks();
  }
  bool parse_suffix() {
    skip_blanks();
    while (take_sign() || take_currency_sign() || close_parenthesis()) skip_blanks();
    return rest_.empty() && !open_;
  }

  void add_digit(char c) {
    DecimalDigits& decimal = number_.decimal;
    if (decimal.count == 0 && c == '0') return;
    if (decimal.count < DecimalDigits::kCapacity - 1) {
      decimal.digits[decimal.count++] = c;
    } else if (c != '0') {
      decimal.digits[DecimalDigits::kCapacity - 1] = '1';
      decimal.count = DecimalDigits::kCapacity;
    }
  }

  bool parse_digits() {
    bool any = false;
    for (; is_digit(peek()) || (any && peek() == ','); rest_.remove_prefix(1)) {
      if (peek() == ',') continue;
      any = true;
      add_digit(peek());
      if (number_.decimal.count != 0) ++number_.decimal.point;
    }
    if (!take('.')) return any;
    for (; is_digit(peek()); rest_.remove_prefix(1)) {
      any = true;
      add_digit(peek());
      if (number_.decimal.count == 0) --number_.decimal.point;
    }
    return any;
  }

  bool parse_exponent() {
    const char mark = lower(peek());
    if (mark != 'e' && mark != 'd') return true;
    rest_.remove_prefix(1);
    const bool negative = peek() == '-';
    if (negative || peek() == '+') rest_.remove_prefix(1);
    if (!is_digit(peek())) return false;
    std::int64_t exponent = 0;
    for (; is_digit(peek()); rest_.remove_prefix(1)) {
      exponent = std::min(exponent * 10 + (peek() - '0'), kFarExponent);
    }
    number_.decimal.point += negative ? -exponent : exponent;
    return true;
  }

  std::string_view rest_;
  NumberInText& number_;
  bool sign_ = false;
  bool minus_ = false;
  bool currency_ = false;
  bool parenthesis_ = false;
  bool open_ = false;
};

// "0.d1d2d3…E<point>" in a form that std::from_chars reads.
double exact_double(const DecimalDigits& decimal) {
  std::array<char, DecimalDigits::kCapacity + 32> buffer;
  char* out = buffer.data();
  *out++ = '0';
  *out++ = '.';
  out = std::copy_n(decimal.digits.data(), decimal.count, out);
  *out++ = 'e';
  out = std::to_chars(out, buffer.data() + buffer.size(), decimal.point).ptr;
  double real = 0;
  std::from_chars(buffer.data(), out, real);
  return real;
}

// Where the digits from `index` on stand against a half of the place before them: below, at, above it.
int against_half(const DecimalDigits& decimal, std::int64_t index) {
  if (index < 0) return -1;
  const char first = digit_at(decimal, index);
  if (first != '5') return first < '5' ? -1 : 1;
  return static_cast<std::int64_t>(decimal.count) > index + 1 ? 1 : 0;
}

void drop_trailing_zeros(DecimalDigits& decimal) {
  while (decimal.count > 0 && decimal.digits[decimal.count - 1] == '0') --decimal.count;
}

void append_repeated(ShortText& text, char c, std::int64_t times) {
  for (; times > 0; --times) text.append(c);
}

void append_scientific(ShortText& text, const DecimalDigits& decimal) {
  text.append(decimal.digits[0]);
  if (decimal.count > 1) text.append('.');
  text.append({decimal.digits.data() + 1, decimal.count - 1});
  const std::int64_t exponent = decimal.point - 1;
  const std::int64_t magnitude = std::abs(exponent);
  text.append(exponent < 0 ? "E-" : "E+");
  if (magnitude < 10) text.append('0');
  text.append(whole_number_text(magnitude));
}

void append_plain(ShortText& text, const DecimalDigits& decimal) {
  const std::int64_t whole = std::max<std::int64_t>(decimal.point, 0);
  for (std::int64_t i = 0; i < whole; ++i) text.append(digit_at(decimal, i));
  if (whole == 0) text.append('0');
  if (decimal.point >= static_cast<std::int64_t>(decimal.count)) return;
  text.append('.');
  append_repeated(text, '0', -decimal.point);
  const auto from = static_cast<std::size_t>(whole);
  text.append({decimal.digits.data() + from, decimal.count - from});
}

// Plain as long as all digits, those behind the point with its leading zeros, are at most `significant`: 1/3 is
// 0.333333333333333, but 1/30 is 3.33333333333333E-02.
ShortText real_text(double real, int significant) {
  if (std::isnan(real)) return ShortText("-1.#IND");
  if (std::isinf(real)) return ShortText(real < 0 ? "-1.#INF" : "1.#INF");
  DecimalDigits decimal;
  digits_of(real, significant, decimal);
  if (decimal.count == 0) return ShortText("0");
  ShortText text;
  if (decimal.negative) text.append('-');
  const auto behind_point = static_cast<std::int64_t>(decimal.count) - decimal.point;
  const bool too_small = decimal.point < 1 && behind_point > significant;
  if (too_small || decimal.point > significant) {
    append_scientific(text, decimal);
  } else {
    append_plain(text, decimal);
  }
  return text;
}

}  // namespace

char digit_at(const DecimalDigits& decimal, std::int64_t index) {
  const bool held = index >= 0 && index < static_cast<std::int64_t>(decimal.count);
  return held ? decimal.digits[static_cast<std::size_t>(index)] : '0';
}

bool parse_number(std::string_view text, NumberInText& number) {
  return NumberParser(text, number).parse();
}

std::optional<double> double_of(const NumberInText& number) {
  if (number.is_bits) return static_cast<double>(number.bits);
  const DecimalDigits& decimal = number.decimal;
  if (decimal.count == 0 || decimal.point < -400) return 0.0;
  if (decimal.point > 309) return std::nullopt;
  const double magnitude = exact_double(decimal);
  if (magnitude == 0 && decimal.point > 300) return std::nullopt;  // what std::from_chars leaves beyond the range
  return decimal.negative ? -magnitude : magnitude;
}

std::optional<std::int64_t> currency_of(const NumberInText& number) {
  constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();
  if (number.is_bits) {
    if (number.bits > kLargest / 10000) return std::nullopt;
    return static_cast<std::int64_t>(number.bits) * 10000;
  }
  const DecimalDigits& decimal = number.decimal;
  const std::int64_t places = decimal.point + 4;  // digits of the result
  if (decimal.count == 0 || places < 0) return 0;
  if (places > 19) return std::nullopt;
  std::uint64_t scaled = 0;
  for (std::int64_t i = 0; i < places; ++i)
    scaled = scaled * 10 + static_cast<std::uint64_t>(digit_at(decimal, i) - '0');
  const int half = against_half(decimal, places);
  if (half > 0 || (half == 0 && scaled % 2 != 0)) ++scaled;
  if (scaled > kLargest + (decimal.negative ? 1U : 0U)) return std::nullopt;
  return static_cast<std::int64_t>(decimal.negative ? ~scaled + 1 : scaled);
}

void digits_of(double real, int significant, DecimalDigits& decimal) {
  decimal.negative = real < 0;
  decimal.count = 0;
  decimal.point = 0;
  if (real == 0) return;
  std::array<char, 40> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(real),
                                          std::chars_format::scientific, significant - 1);
  if (error != std::errc{}) return;
  const char* const mark = std::find(buffer.data(), end, 'e');
  for (const char* c = buffer.data(); c != mark; ++c) {
    if (*c != '.') decimal.digits[decimal.count++] = *c;
  }
  drop_trailing_zeros(decimal);
  int exponent = 0;
  std::from_chars(mark[1] == '+' ? mark + 2 : mark + 1, end, exponent);
  decimal.point = exponent + 1;
}

void digits_of(std::int64_t number, int decimals, DecimalDigits& decimal) {
  decimal.negative = number < 0;
  decimal.count = 0;
  decimal.point = 0;
  if (number == 0) return;
  const auto bits = static_cast<std::uint64_t>(number);
  const std::uint64_t magnitude = decimal.negative ? ~bits + 1 : bits;
  char* const begin = decimal.digits.data();
  decimal.count = static_cast<std::size_t>(std::to_chars(begin, begin + 20, magnitude).ptr - begin);
  decimal.point = static_cast<std::int64_t>(decimal.count) - decimals;
  drop_trailing_zeros(decimal);
}

void round_digits(DecimalDigits& decimal, std::int64_t places) {
  const std::int64_t kept = decimal.point + places;
  if (kept >= static_cast<std::int64_t>(decimal.count)) return;
  const bool up = against_half(decimal, kept) >= 0;
  decimal.count = static_cast<std::size_t>(std::max<std::int64_t>(kept, 0));
  if (!up) return drop_trailing_zeros(decimal);
  while (decimal.count > 0 && decimal.digits[decimal.count - 1] == '9') --decimal.count;
  if (decimal.count > 0) {
    ++decimal.digits[decimal.count - 1];
    return;
  }
  decimal.digits[0] = '1';
  decimal.count = 1;
  ++decimal.point;
}

std::optional<double> number_in(std::string_view text) {
  NumberInText number;
  if (!parse_number(text, number)) return std::nullopt;
  return double_of(number);
}

ShortText double_text(double real) {
  return real_text(real, kDoubleDigits);
}
ShortText single_text(double real) {
  return real_text(real, kSingleDigits);
}

ShortText currency_text(std::int64_t ten_thousandths) {
  DecimalDigits decimal;
  digits_of(ten_thousandths, 4, decimal);
  ShortText text;
  if (decimal.negative) text.append('-');
  append_plain(text, decimal);
  return text;
}

ShortText whole_number_text(std::int64_t number) {
  std::array<char, 24> buffer;
  const char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
  return ShortText(std::string_view(buffer.data(), static_cast<std::size_t>(end - buffer.data())));
}

}  // namespace pv::vbscript
