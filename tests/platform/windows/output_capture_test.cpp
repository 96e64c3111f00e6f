#include "platform/output_capture.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace pv {
namespace {

// A library with a C run-time of its own asks the system for its standard output.
TEST(OutputCapture, CatchesWhatGoesPastTheCRunTime) {
  platform::OutputCapture capture;
  DWORD written = 0;
  EXPECT_NE(::WriteFile(::GetStdHandle(STD_OUTPUT_HANDLE), "written\n", 8, &written, nullptr), 0);
  EXPECT_EQ(capture.take(), "written\n");
}

}  // namespace
}  // namespace pv
