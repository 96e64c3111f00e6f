#include "common/fields.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace pv {
namespace {

struct FieldCase {
  const char* what;
  std::string_view line;
  std::string_view delimiter;
  int number;
  char escape;
  bool stored;
  std::string_view field;  // "preset": left alone
};
constexpr FieldCase kFields[] = {
    {"the first", "a\tb\tc", "\t", 1, '\0', true, "a"},
    {"beyond the last", "a\tb\tc", "\t", 7, '\0', true, "c"},
    {"0 acts as 1", "a\tb\tc", "\t", 0, '\0', true, "a"},
    {"no delimiter, the whole line", "abc", ",", 1, '\0', true, "abc"},
    {"no delimiter, no second field", "abc", ",", 2, '\0', false, "preset"},
    {"an empty delimiter ends", "abc", "", INT_MAX, '\0', false, "preset"},
    {"a delimiter in the other case", "1And2aND3", "AND", 2, '\0', true, "2"},
    {"an escaped delimiter", "x/,y,z", ",", 1, '/', true, "x/,y"},
    {"the field after it", "x/,y,z", ",", 2, '/', true, "z"},
    {"the escape must be in the same field", "a,,b", ",", 2, ',', true, ""},
    {"one byte below the capacity", "1234567,", ",", 1, '\0', true, "1234567"},
    {"as long as the capacity", "12345678,", ",", 1, '\0', false, ""},
};

TEST(Fields, SplitField) {
  for (const FieldCase& c : kFields) {
    BoundedText<8> out;
    ASSERT_TRUE(out.assign("preset"));
    EXPECT_EQ(split_field(c.line, c.delimiter, c.number, out, c.escape), c.stored) << c.what;
    EXPECT_EQ(out.view(), c.field) << c.what;
  }
}

TEST(Fields, CountFields) {
  const struct {
    const char* what;
    std::string line;
    std::string_view delimiter;
    int count;
  } cases[] = {
      {"an empty line", "", ",", 0},
      {"empty fields count", "a,b,,c", ",", 4},
      {"a delimiter at the very start does not", ",a", ",", 1},
      {"one at the end does", "a,", ",", 2},
      {"case counts", "1and2AND3", "AND", 2},
      {"finds may overlap", "a,,,", ",,", 3},
      {"1500 delimiters", std::string(1500, ','), ",", 1000},
      {"an empty delimiter", "abc", "", 1},
  };
  for (const auto& c : cases) EXPECT_EQ(count_fields(c.line, c.delimiter), c.count) << c.what;
}

struct NumberCase {
  const char* what;
  std::string_view text;
  int number;
};
constexpr NumberCase kNumbers[] = {
    {"white space of every kind before", " \t\r\n\v\f7", 7},
    {"text behind", "12kb", 12},
    {"a minus sign", "-5", -5},
    {"the largest", "2147483647", INT_MAX},
    {"far above it", "99999999999999999999999999", INT_MAX},
    {"the smallest", "-2147483648", INT_MIN},
    {"one below it", "-2147483649", INT_MIN},
};

TEST(Fields, LeadingNumber) {
  for (const NumberCase& c : kNumbers) EXPECT_EQ(leading_number(c.text), c.number) << c.what;
}

}  // namespace
}  // namespace pv
