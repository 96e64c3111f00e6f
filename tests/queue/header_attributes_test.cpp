#include "queue/header_attributes.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/output_capture.h"

namespace pv {
namespace {

using namespace std::string_literals;

struct ValueCase {
  const char* what;
  std::string line;
  bool found;
  std::string value;
  std::string printed = {};
};

const char kNoClosingQuote[] = "No closing quotation for attachment\n";

TEST(AttributeValue, EndsAtItsQuoteOrDelimiter) {
  const ValueCase cases[] = {
      {"quoted", "Content-Disposition: attachment; filename=\"a b;c.exe\"; size=1\r\n", true, "a b;c.exe"},
      {"letter case, a tab ends it", "FileName=a.exe\tb", true, "a.exe"},
      {"the end of the text ends it", "filename=a.exe", true, "a.exe"},
      {"a quote inside is kept", "filename=a\"b\r\n", true, "a\"b"},
      {"inside a longer name, the first of two", "xfilename=a; filename=b", true, "a"},
      {"the name alone does not count", "filename; x=1; filename*=b; filename=c", true, "c"},
      {"a shorter name before it", "e=1;filename=a", true, "a"},
      {"behind a NUL", "a\0filename=b"s, false, ""},
      {"a NUL ends it", "filename=a\0b"s, true, "a"},
      {"no closing quote", "filename=\"a.exe\r\n", false, "", kNoClosingQuote},
      {"as long as fits", "filename=" + std::string(1022, 'a'), true, std::string(1022, 'a')},
      {"a byte longer", "filename=" + std::string(1023, 'a'), false, "", kNoClosingQuote},
      {"a quoted value of a megabyte", "filename=\"" + std::string(1 << 20, 'a') + '"', false, "", kNoClosingQuote},
  };
  for (const ValueCase& c : cases) {
    AttributeText value;
    value.cut("left over");
    platform::OutputCapture output;
    EXPECT_EQ(AttributeValue(c.line, "filename", value), c.found) << c.what;
    EXPECT_EQ(value.view(), c.value) << c.what;
    EXPECT_EQ(output.take(), c.printed) << c.what;
  }
}

TEST(HeaderParameterValue, IsCopiedUpToTheLineEnd) {
  const ValueCase cases[] = {
      {"quoted", "BOUNDARY=\"a b\"; x=1", true, "a b"},
      {"unquoted keeps blanks and quotes", "boundary=a b\"c ;x", true, "a b\"c "},
      {"white space before the value", "boundary= \t\v\f\r\n\"abc\"", true, "abc"},
      {"a line end ends a quoted one", "boundary=\"a\r\nb\"", true, "a"},
      {"a NUL ends it", "boundary=a\0b"s, true, "a"},
      {"the end of the text", "boundary=", false, "left over"},
      {"absent", "Content-Type: text/plain\r\n", false, "left over"},
      {"cut to what fits", "boundary=" + std::string(1 << 20, 'a'), true, std::string(1023, 'a')},
  };
  for (const ValueCase& c : cases) {
    AttributeText value;
    value.cut("left over");
    EXPECT_EQ(HeaderParameterValue(c.line, "boundary=", value), c.found) << c.what;
    EXPECT_EQ(value.view(), c.value) << c.what;
  }
}

}  // namespace
}  // namespace pv
