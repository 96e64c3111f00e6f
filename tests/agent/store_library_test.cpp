#include <gtest/gtest.h>

#include "agent/loaded_agent.h"
#include "common/registry_access.h"

namespace pv {
namespace {

TEST(StoreLibrary, IsLoadedWithTheAgentWhenAntivirusIsOn) {
  for (const std::uint32_t antivirus : {0u, 1u}) {
    const test::ServerTree server;
    server.set_text(kRootKey, "Application Directory", STORE_LIBRARY_DIRECTORY);
    server.set_number(kAgentKey, "Antivirus Status", antivirus);
    platform::set_environment_variable("PLUGIN_TEST_FILE", server.path("calls"));
    {
      const test::LoadedAgent agent(server);
      EXPECT_EQ(server.read("calls"), antivirus == 1 ? "init " : "");
    }
    EXPECT_EQ(server.read("calls"), antivirus == 1 ? "init uninit " : "");
  }
}

}  // namespace
}  // namespace pv
