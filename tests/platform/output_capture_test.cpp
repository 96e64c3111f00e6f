#include "platform/output_capture.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

namespace pv {
namespace {

using platform::OutputCapture;

TEST(OutputCapture, CatchesWhatGoesPastTheStreamToo) {
  OutputCapture outer;
  {
    std::printf("before ");
    OutputCapture inner;
    std::printf("printed\n");
    std::fflush(stdout);
    EXPECT_EQ(::write(STDOUT_FILENO, "written\n", 8), 8);
    EXPECT_EQ(inner.take(), "printed\nwritten\n");
    EXPECT_EQ(inner.take(), "");
    std::printf("after");
  }
  EXPECT_EQ(outer.take(), "before after");
}

TEST(OutputCapture, HoldsAnyAmountAndEndsWithItsLife) {
  OutputCapture outer;
  const std::string large(200000, 'x');
  {
    const OutputCapture forgotten;
    std::printf("lost");
  }
  std::printf("%s", large.c_str());
  EXPECT_EQ(outer.take(), large);
}

}  // namespace
}  // namespace pv
