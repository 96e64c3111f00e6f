#include "common/output.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace pv {
namespace {

TEST(PrintedTogether, KeepsTheOrderOfWhatEveryoneHerePrints) {
  const std::string long_text(10000, 'x');  // more than is kept at once
  testing::internal::CaptureStdout();
  {
    const PrintedTogether outer;
    print("%d ", 1);
    {
      const PrintedTogether inner;
      print_parts({"2", " "});
    }
    hand_over_output();
    std::fputs("library ", stdout);
    print_text("3 ");
    print_parts({long_text, " "});
    print_text(long_text + " ");
    print_text("4");
  }
  print_text(" 5");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "1 2 library 3 " + long_text + " " + long_text + " 4 5");
}

}  // namespace
}  // namespace pv
