#include "platform/output_capture.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace pv {
namespace {

TEST(OutputCapture, CatchesWhatGoesPastTheStream) {
  platform::OutputCapture capture;
  EXPECT_EQ(::write(STDOUT_FILENO, "written\n", 8), 8);
  EXPECT_EQ(capture.take(), "written\n");
}

}  // namespace
}  // namespace pv
