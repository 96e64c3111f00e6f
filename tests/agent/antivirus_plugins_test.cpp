#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/loaded_agent.h"
#include "common/registry_access.h"

namespace pv {
namespace {

using test::LoadedAgent;
using test::ServerTree;

constexpr char kLoading[] = "Antivirus Plugin Provider loading library..\n";
constexpr char kNoProvider[] = "Antivirus Loading - Unable to locate AV Plugin Provider.\n";
constexpr char kNoEntry[] = "Antivirus Loading - Unable to locate AV Plugin Initialize.\n";

// Another filter agent with a plug-in library.
void add_agent(const ServerTree& server, const std::string& name, const char* library, std::uint32_t status = 1,
               std::uint32_t enabled = 1) {
  const std::string key = std::string(kFiltersKey) + "\\" + name;
  server.set_number(key, "Status", status);
  server.set_number(key, "Antivirus Agent Plugin Enabled", enabled);
  if (library != nullptr) server.set_text(key, "Antivirus Agent Plugin Provider", library);
}

struct OrderCase {
  const char* what;
  const char* order;
  std::int32_t result;
  std::string printed;
  int initialised;
};

TEST(FilterInit, LoadsThePluginsOfOtherAgents) {
  const std::string loading = kLoading;
  const OrderCase cases[] = {
      {"no other agent", "MTAFILTER", 1, "", 0},
      {"no value", "", 1, "", 0},
      {"this agent in any case, and empty entries", "MtaFilter,,mtafilter", 1, "", 0},
      {"a plug-in", "MTAFILTER,GOOD", 1, loading, 1},
      {"two of them", "GOOD,GOOD2", 1, loading + loading, 2},
      {"one without the entry point, and another after it", "PLAIN,GOOD", 1, loading + kNoEntry + loading, 1},
      {"a missing library ends it", "MISSING,GOOD", 0, loading + kNoProvider, 0},
      {"switched off", "OFF,DISABLED,UNNAMED,UNKNOWN", 1, "", 0},
  };
  for (const OrderCase& c : cases) {
    const ServerTree server;
    server.set_text(kRootKey, "Application Directory", PLUGIN_DIRECTORY);
    if (*c.order != '\0') server.set_text(kFiltersKey, "Processing Order", c.order);
    add_agent(server, "GOOD", "GOOD_AV_PLUGIN.DLL");
    add_agent(server, "GOOD2", "Good_AV_plugin.dll");
    add_agent(server, "PLAIN", "plain_av_plugin.dll");
    add_agent(server, "MISSING", "NOT_THERE.DLL");
    add_agent(server, "OFF", "NOT_THERE.DLL", 0, 1);
    add_agent(server, "DISABLED", "NOT_THERE.DLL", 1, 2);
    add_agent(server, "UNNAMED", nullptr);
    platform::set_environment_variable("PLUGIN_TEST_FILE", server.path("initialised"));

    const LoadedAgent agent(server);
    testing::internal::CaptureStdout();
    EXPECT_EQ(agent.find<decltype(FilterInit)>("FilterInit")(0), c.result) << c.what;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), c.printed) << c.what;
    EXPECT_EQ(server.read("initialised").size(), static_cast<std::size_t>(c.initialised) * 12) << c.what;
  }
}

}  // namespace
}  // namespace pv
