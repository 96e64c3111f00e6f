#include "providers/decimal_number.h"

#include <gtest/gtest.h>

#include <limits>

namespace pv {
namespace {

struct NumberCase {
  const char* what;
  const char* text;
  double number;
};

constexpr double kLargest = std::numeric_limits<double>::max();

constexpr NumberCase kNumbers[] = {
    {"a whole number", "97", 97},
    {"white space of every kind before it", " \t\r\n\v\f97", 97},
    {"a fraction and something behind", "97.5%", 97.5},
    {"signs", "+2.5", 2.5},
    {"negative", "-2.5", -2.5},
    {"two signs", "--2", 0},
    {"nothing before the point", ".5", 0.5},
    {"nothing behind the point", "5.x", 5},
    {"a second point", "1.2.3", 1.2},
    {"a point alone", ".", 0},
    {"a comma is no point", "97,5", 97},
    {"an exponent", "1e2", 100},
    {"a signed one", "25E-1", 2.5},
    {"an exponent without digits", "3e+", 3},
    {"another word's e", "3eggs", 3},
    {"hexadecimal", "0x1F", 0},
    {"no number", "spam", 0},
    {"nan", "nan", 0},
    {"inf", "-inf", 0},
    {"empty", "", 0},
    {"too large", "1e999", kLargest},
    {"too large and negative", "-1e999", -kLargest},
    {"too large by an exponent beyond 32 bits", "1e99999999999", kLargest},
    {"too small", "1e-999", 0},
    {"zeros with a large exponent", "0.00e999", 0},
};

TEST(DecimalNumber, TheLongestPrefixThatIsOneCounts) {
  for (const NumberCase& c : kNumbers) EXPECT_EQ(leading_decimal(c.text), c.number) << c.what;
}

TEST(DecimalNumber, SixDecimals) {
  EXPECT_EQ(six_decimals(97.5), "97.500000");
  EXPECT_EQ(six_decimals(leading_decimal("-nan")), "0.000000") << "no number has no sign";
  EXPECT_EQ(six_decimals(-0.0000004), "-0.000000");
  EXPECT_EQ(six_decimals(2.0 / 3), "0.666667");
  EXPECT_EQ(six_decimals(-kLargest).size(), 317U);
}

}  // namespace
}  // namespace pv
