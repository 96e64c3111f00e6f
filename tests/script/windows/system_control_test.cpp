// What only Windows' own script control does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/agent_settings.h"
#include "platform/script_control.h"
#include "script/script_host.h"

namespace pv {
namespace {

using testing::EndsWith;
using testing::StartsWith;

TEST(SystemScriptControl, AThreadOutsideCOMGetsNoControl) {
  settings().debug_status = 2;
  testing::internal::CaptureStdout();
  const std::int32_t verdict =
      run_script("Function PV_Execute\r\nPV_Execute=1\r\nEnd Function\r\n", "PV_Execute", {}, false);
  const std::string lines = testing::internal::GetCapturedStdout();
  settings().debug_status = 0;
  // A system without the control runs the program in our engine, which asks for no apartment.
  std::int32_t failure = 0;
  if (platform::create_script_control(failure) == nullptr && static_cast<std::uint32_t>(failure) == 0x800401F0U) {
    EXPECT_EQ(verdict, 0);
    EXPECT_THAT(lines, StartsWith("PostVane Filter Script incurred an error: (-2147221008) "));
  } else {
    EXPECT_EQ(verdict, 1);
  }
}

TEST(SystemScriptControl, FailuresHaveTheSystemsTextInOneLine) {
  EXPECT_THAT(platform::script_failure_text(5), EndsWith("denied."));
  EXPECT_EQ(platform::script_failure_text(-2146827286), "");
}

}  // namespace
}  // namespace pv
