#include "whitelist/system_whitelist.h"

#include <gtest/gtest.h>

#include <string>

#include "common/registry_access.h"
#include "platform/output_capture.h"
#include "support/server_tree.h"

namespace pv {
namespace {

constexpr char kList[] = R"(SOFTWARE\Post Vane\Post Vane\CONNECTORS\SMTP\White List)";

TEST(SystemWhitelist, HoldsAPatternInEachValueName) {
  const test::ServerTree server;
  server.set_number(kAgentKey, "Activity Log Enabled", 2);  // to standard output
  EXPECT_FALSE(IsWhitelisted("10.1.2.3")) << "no such key";

  const std::string longest = std::string(253, '9') + ".*";
  for (const std::string& pattern :
       {std::string("10.*.*.*"), std::string("10.1.*.*"), std::string("fe80::*"), longest, "8" + longest}) {
    server.set_text(kList, pattern, "");
  }
  const struct {
    const char* what;
    std::string address;
    bool listed;
  } cases[] = {
      {"two patterns match, one line is written", "10.1.2.3", true},
      {"none matches", "11.1.2.3", false},
      {"an IPv6 address", "FE80::1", true},
      {"a pattern of 255 bytes", std::string(253, '9') + ".1", true},
      {"a pattern of 256 bytes", "8" + std::string(253, '9') + ".1", false},
  };
  for (const auto& c : cases) {
    platform::OutputCapture output;
    EXPECT_EQ(IsWhitelisted(c.address), c.listed) << c.what;
    const std::string line =
        " PV-I0092: " + c.address + " is registered in the system whitelist and was therefore excluded from checking\n";
    EXPECT_EQ(output.take(), c.listed ? line : "") << c.what;
  }
}

}  // namespace
}  // namespace pv
