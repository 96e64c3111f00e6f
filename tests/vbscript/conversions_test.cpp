#include "vbscript/conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "vbscript/engine.h"

namespace pv::vbscript {
namespace {

TEST(NumberText, EveryDoubleIsReadBackToFifteenDigits) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 50000; ++i) {
    const std::uint64_t bits = random();
    double real = 0;
    std::memcpy(&real, &bits, sizeof real);
    if (i % 2 == 0) real = std::fmod(real, 1E6) / 8;
    if (!std::isfinite(real) || std::fabs(real) > 1.797E308) continue;
    const ShortText text = double_text(real);
    const auto read = number_in(text);
    ASSERT_TRUE(read.has_value()) << text.view();
    ASSERT_EQ(double_text(*read).view(), text.view());
    ASSERT_LE(std::fabs(*read - real), std::fabs(real) * 1E-14) << text.view();
  }
}

TEST(NumberText, ReadsAsTheCLibraryDoes) {
  std::mt19937 random(2);
  const auto digit = [&random] { return static_cast<char>('0' + random() % 10); };
  for (int i = 0; i < 20000; ++i) {
    std::string text(1 + random() % 30, '0');
    for (char& c : text) c = digit();
    text.insert(random() % text.size() + 1, 1, '.');
    if (i % 2 == 0) text += "e" + std::to_string(static_cast<int>(random() % 600) - 300);
    const double expected = std::strtod(text.c_str(), nullptr);
    if (std::isinf(expected)) continue;
    ASSERT_EQ(number_in(text), expected) << text;
  }
}

TEST(NumberText, LongTextsAndFarExponents) {
  const std::string zeros(1 << 20, '0');
  EXPECT_EQ(number_in(zeros + "7"), 7.0);
  EXPECT_EQ(number_in("0." + zeros + "7"), 0.0);
  EXPECT_EQ(number_in("1" + zeros + "e-1048576"), 1.0);
  EXPECT_EQ(number_in("0." + zeros + "7e1048577"), 7.0);
  EXPECT_EQ(number_in("1" + zeros), std::nullopt);
  EXPECT_EQ(number_in("9007199254740992.5" + zeros + "1"), 9007199254740992.0);
  EXPECT_EQ(number_in("9007199254740993." + zeros + "1"), 9007199254740994.0);
  EXPECT_EQ(number_in("1e99999999999999999999"), std::nullopt);
  EXPECT_EQ(number_in("1e-99999999999999999999"), 0.0);
  EXPECT_EQ(number_in("0e99999999999999999999"), 0.0);
  EXPECT_EQ(number_in("&H" + zeros + "F"), 15.0);
  EXPECT_EQ(number_in("&H10000000000000000"), std::nullopt);
}

TEST(NumberText, OddBytesAreNoNumber) {
  using namespace std::string_view_literals;
  EXPECT_EQ(number_in("5\0"sv), std::nullopt);
  EXPECT_EQ(number_in("\0"sv), std::nullopt);
  EXPECT_EQ(number_in("\xB2"sv), std::nullopt);
  EXPECT_EQ(number_in("\xA0\r\n5\t"sv), 5.0);
  EXPECT_EQ(date_in("1/1/2004\0"sv), std::nullopt);
}

TEST(NumberText, WhatIsReadFromNoiseIsAlwaysFinite) {
  constexpr std::string_view kBytes = "0123456789.,eEdD+-$() &HhO/:apm\xFF";
  std::mt19937 random(3);
  for (int i = 0; i < 200000; ++i) {
    std::string text(random() % 12, ' ');
    for (char& c : text) c = kBytes[random() % kBytes.size()];
    const auto number = number_in(text);
    ASSERT_TRUE(!number || std::isfinite(*number)) << text;
    const auto date = date_in(text);
    ASSERT_TRUE(!date || date_in(date_text(*date)) == date) << text;
  }
}

TEST(Conversions, ErrorValuesHaveATextAndNothingElse) {
  Engine engine;
  EXPECT_EQ(to_text(engine, Value::error(13)).view(), "Error 13");
  EXPECT_THROW(to_double(engine, Value::error(13)), RuntimeError);
  EXPECT_THROW(to_boolean(engine, Value::missing()), RuntimeError);
}

TEST(Conversions, ATextIsSharedAndANumbersTextNeedsNoHeap) {
  Engine engine;
  const Value text = engine.heap().text("abc");
  EXPECT_EQ(to_text(engine, text).text(), text.text());
  const std::size_t bytes = engine.heap().bytes();
  TextStorage storage;
  EXPECT_EQ(text_of(engine, Value::of_double(-1.5), storage), "-1.5");
  EXPECT_EQ(text_of(engine, Value::date(-657434.99999), storage), "1/1/100 11:59:59 PM");
  EXPECT_EQ(engine.heap().bytes(), bytes);
}

}  // namespace
}  // namespace pv::vbscript
