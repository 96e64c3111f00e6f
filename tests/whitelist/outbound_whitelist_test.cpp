#include "whitelist/outbound_whitelist.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "platform/paths.h"
#include "support/server_tree.h"

namespace pv {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class OutboundWhitelist : public testing::Test {
 protected:
  OutboundWhitelist() {
    read_server_settings();
    server_.set_number(kSmtpKey, "Whitelist Outbound IPAddresses", 1);
  }
  ~OutboundWhitelist() override { forget_agent_settings(); }

  void set_mode(std::uint32_t parts) const { server_.set_number(kSmtpKey, "Whitelist Outbound IPAddress Mode", parts); }

  test::ServerTree server_;
};

TEST_F(OutboundWhitelist, TheModeChoosesTheMarker) {
  const std::string most(65, 'a');
  const struct {
    const char* what;
    std::uint32_t mode;
    std::string address;
    std::string marker;
  } cases[] = {
      {"a colon becomes a hyphen", 0, "fe80::1", "fe80--1.tab"},
      {"a name as long as can be", 0, most, most + ".tab"},
      {"three parts", 3, "192.168.1.77", "192.168.1.tab"},
      {"parts that do not exist leave their dots", 6, "192.168.1.77", "192.168.1.77...tab"},
      {"five parts are no address", 3, "1.2.3.4.5", ".tab"},
      {"an IPv6 address has no parts", 3, "fe80::1", ".tab"},
      {"a longer part is empty", 2, std::string(20, '1') + ".2.3.4", ".2.tab"},
  };
  for (const auto& c : cases) {
    set_mode(c.mode);
    EXPECT_FALSE(IsOutboundWhiteListed(c.address, "", "")) << c.what;
    server_.write("conf/Connections/Whitelist/" + c.marker, "");
    EXPECT_TRUE(IsOutboundWhiteListed(c.address, "", "")) << c.what;
    server_.remove("conf/Connections");
  }
}

TEST_F(OutboundWhitelist, TheNamesChooseTheList) {
  server_.write("conf/Connections/Whitelist/1.1.1.1.tab", "");
  server_.write("conf/Postoffices/office/Connections/Whitelist/2.2.2.2.tab", "");
  server_.write("conf/Postoffices/office/Mailboxes/ann/Connections/Whitelist/3.3.3.3.tab", "");
  const auto listed = [](std::string_view postoffice, std::string_view mailbox) {
    std::string all;
    for (const std::string_view address : {"1.1.1.1", "2.2.2.2", "3.3.3.3"}) {
      if (IsOutboundWhiteListed(address, postoffice, mailbox)) all += address;
    }
    return all;
  };
  EXPECT_EQ(listed("", "ann"), "1.1.1.1");
  EXPECT_EQ(listed("office", ""), "2.2.2.2");
  EXPECT_EQ(listed("office", "ann"), "3.3.3.3");
}

TEST_F(OutboundWhitelist, SwitchedOffItHoldsNothingAndMakesNothing) {
  server_.write("conf/Connections/Whitelist/1.1.1.1.tab", "");
  server_.set_number(kSmtpKey, "Whitelist Outbound IPAddresses", 0);
  EXPECT_FALSE(IsOutboundWhiteListed("1.1.1.1", "", ""));
  EXPECT_FALSE(server_.exists("conf/Connections/Spam"));
  server_.set_number(kSmtpKey, "Whitelist Outbound IPAddresses", 1);
  EXPECT_FALSE(IsOutboundWhiteListed("1.1.1.1", "office", ""));
  EXPECT_FALSE(server_.exists("conf/Connections/Spam")) << "a postoffice's list";
  EXPECT_TRUE(IsOutboundWhiteListed("1.1.1.1", "", ""));
  EXPECT_TRUE(server_.exists("conf/Connections/Spam"));
}

TEST_F(OutboundWhitelist, NoNameLeadsOutOfItsDirectory) {
  const std::string too_long(66, 'a');
  for (const std::string& marker :
       {"Whitelist/1.1.1.1.tab"s, "outside.tab"s, "Whitelist/.tab"s, "Whitelist/" + too_long + ".tab"}) {
    server_.write("conf/Connections/" + marker, "");
  }
  for (const std::string& name : {"office"s, std::string(208, 'p'), std::string(209, 'p')}) {
    server_.write("conf/Postoffices/" + name + "/Connections/Whitelist/1.1.1.1.tab", "");
  }
  const std::string longest(208, 'p');
  const std::string marker = "conf/Postoffices/" + longest + "/Connections/Whitelist/1.1.1.1.tab";
  // The path of 255 bytes is longer than some systems take together with the directory.
  EXPECT_EQ(IsOutboundWhiteListed("1.1.1.1", longest, ""), platform::existing_path(server_.path(marker)).has_value());
  const struct {
    const char* what;
    std::string address;
    std::string postoffice;
  } cases[] = {
      {"no address", "", ""},
      {"a separator", "../outside", ""},
      {"the other separator", "..\\outside", ""},
      {"a wildcard", "1.1.1.*", ""},
      {"a name that is too long", too_long, ""},
      {"a postoffice that is its parent", "1.1.1.1", ".."},
      {"a postoffice with a separator", "1.1.1.1", "office/../office"},
      {"a path of 256 bytes", "1.1.1.1", std::string(209, 'p')},
  };
  for (const auto& c : cases) EXPECT_FALSE(IsOutboundWhiteListed(c.address, c.postoffice, "")) << c.what;
  set_mode(0xFFFFFFFF);
  EXPECT_FALSE(IsOutboundWhiteListed("1.1.1.1", "", "")) << "more parts than a name can have";
}

TEST_F(OutboundWhitelist, WithoutAConfigurationDirectoryPathsAreRelative) {
  const fs::path before = fs::current_path();
  fs::current_path(server_.path());
  settings().whitelist_configuration_directory.clear();
  server_.write("Connections/Whitelist/1.1.1.1.tab", "");
  server_.write("Postoffices/office/Connections/Whitelist/1.1.1.1.tab", "");
  EXPECT_TRUE(IsOutboundWhiteListed("1.1.1.1", "", ""));
  EXPECT_TRUE(IsOutboundWhiteListed("1.1.1.1", "office", ""));
  fs::current_path(before);
}

TEST(AppendPath, SeparatesOnceAndNeverOverflows) {
  const std::string separator(1, platform::kPathSeparator);
  const std::string most(509, 'd');
  const struct {
    const char* what;
    std::string directory;
    std::string_view name;
    std::string path;
    bool whole;
  } cases[] = {
      {"a separator between", "conf", "x", "conf" + separator + "x", true},
      {"a backslash is there", "conf\\", "x", "conf\\x", true},
      {"the last byte", most, "x", most + separator + "x", true},
      {"a byte too many", most, "xy", most + separator + "x", false},
  };
  for (const auto& c : cases) {
    BoundedText<512> path;
    path.cut(c.directory);
    EXPECT_EQ(append_path(path, c.name), c.whole) << c.what;
    EXPECT_EQ(path.view(), c.path) << c.what;
  }
}

}  // namespace
}  // namespace pv
