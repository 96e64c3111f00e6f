#include "script/script_debug.h"

#include <gtest/gtest.h>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "support/server_tree.h"

namespace pv {
namespace {

TEST(ScriptDebug, DebugStatusSaysWhereLinesGo) {
  const test::ServerTree server;
  server.set_number(kAgentKey, "Activity Log Enabled", 2);  // reports show on standard output, after a blank
  const char* const expected[] = {"", " line\n", "line\n", ""};
  for (std::uint32_t status = 0; status < 4; ++status) {
    settings().debug_status = status;
    testing::internal::CaptureStdout();
    script_debug_print("line\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), expected[status]) << "Debug Status " << status;
  }
  forget_agent_settings();
}

}  // namespace
}  // namespace pv
