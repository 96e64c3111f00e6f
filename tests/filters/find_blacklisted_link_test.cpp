#include "filters/find_blacklisted_link.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "filters/percent_decoding.h"
#include "platform/host_lookup.h"
#include "platform/output_capture.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using testing::ElementsAre;

// What the look-ups were asked, as "host (address)".
std::vector<std::string>& asked() {
  static auto& hosts = *new std::vector<std::string>();
  return hosts;
}

std::optional<std::string> known_hosts(std::string_view host) {
  return host.find("unknown") == std::string_view::npos ? std::optional<std::string>("192.0.2.7") : std::nullopt;
}

// Lists hosts that begin with "listed". Leaves both buffers full and without an end, whatever it answers.
std::int32_t look_up(const char* host, const char* address, char* scratch, char* list_name) {
  EXPECT_EQ(*scratch, '\0') << "the scratch text is empty at each look-up";
  EXPECT_EQ(*list_name, '\0');
  asked().push_back(std::string(host) + " (" + address + ")");
  std::fill_n(scratch, kLookUpScratch, 'x');
  std::fill_n(list_name, BlacklistName::kCapacity, 'L');
  return std::strncmp(host, "listed", 6) == 0 ? -7 : 0;
}

class FindBlacklistedLinkTest : public testing::Test {
 protected:
  FindBlacklistedLinkTest() {
    tree_.set_number(kAgentKey, "Activity Log Enabled", 2);
    platform::set_host_lookup_for_test(&known_hosts);
    forget_agent_settings();
    asked().clear();
  }
  ~FindBlacklistedLinkTest() override {
    platform::set_host_lookup_for_test(nullptr);
    forget_agent_settings();
  }

  std::int32_t find(std::string_view line) {
    platform::OutputCapture capture;
    const std::int32_t found = FindBlacklistedLink("A.MAI", look_ups_, line, list_, &look_up);
    reported_ = capture.take();
    return found;
  }

  test::ServerTree tree_;
  std::uint32_t look_ups_ = 0;
  BlacklistName list_;
  std::string reported_;
};

struct HostCase {
  const char* what;
  std::string line;
  std::vector<std::string> asked;
};

TEST_F(FindBlacklistedLinkTest, LooksUpTheHostOfEachLink) {
  const std::string longest(1023, 'h');
  const HostCase cases[] = {
      {"no link", "www.example.org\r\n", {}},
      {"the secure scheme", "https://a.example/\r\n", {}},
      {"a host and a path", "see http://a.example/b/c today\r\n", {"a.example (192.0.2.7)"}},
      {"the prefix in capitals", "HTTP://a.example\r\n", {"a.example (192.0.2.7)"}},
      {"a host without address", "http://unknown.example\r\n", {"unknown.example ()"}},
      {"a port stays", "http://a.example:80/\r\n", {"a.example:80 (192.0.2.7)"}},
      {"nothing after the prefix", "http://", {" (192.0.2.7)"}},
      {"no host before the path", "http:///a.example\r\n", {" (192.0.2.7)"}},
      {"two links",
       "<a href=\"http://a.example/\">http://b.example</a>",
       {"a.example (192.0.2.7)", "b.example (192.0.2.7)"}},
      {"a link in a link is a part of it", "http://a.example/http://b.example", {"a.example (192.0.2.7)"}},
      {"escapes", "http://%61.ex%61mple/%62", {"a.example (192.0.2.7)"}},
      {"an escaped slash does not end the host", "http://a%2Fb/c", {"a/b (192.0.2.7)"}},
      {"an escaped NUL ends the host", "http://a%00b", {"a (192.0.2.7)"}},
      {"the longest host", "http://" + longest, {longest + " (192.0.2.7)"}},
      {"a longer one is cut", "http://" + longest + "xyz", {longest + " (192.0.2.7)"}},
      {"cut before the host is taken", "http://" + longest + "/", {longest + " (192.0.2.7)"}},
  };
  for (const HostCase& c : cases) {
    asked().clear();
    look_ups_ = 0;
    EXPECT_EQ(find(c.line), 0) << c.what;
    EXPECT_EQ(asked(), c.asked) << c.what;
    EXPECT_EQ(look_ups_, c.asked.size()) << c.what;
    EXPECT_EQ(reported_, "") << c.what;
  }
}

TEST_F(FindBlacklistedLinkTest, LinksEndAtWhiteSpaceQuotesAndAngleBrackets) {
  for (const char end : std::string(" \t\r\n\v\f\"'<>")) {
    asked().clear();
    find(std::string("http://a.example") + end + "b");
    EXPECT_THAT(asked(), ElementsAre("a.example (192.0.2.7)")) << static_cast<int>(end);
  }
  for (const char inside : std::string("();,!&?#\x01\x80")) {
    asked().clear();
    find(std::string("http://a") + inside + "b");
    EXPECT_THAT(asked(), ElementsAre(std::string("a") + inside + "b (192.0.2.7)")) << static_cast<int>(inside);
  }
}

TEST_F(FindBlacklistedLinkTest, ReportsTheFirstListedLink) {
  const std::string line = "http://a.example http://listed.example/x http://b.example";
  EXPECT_EQ(find(line), 1);
  EXPECT_EQ(look_ups_, 1U) << "a finding is not counted";
  EXPECT_THAT(asked(), ElementsAre("a.example (192.0.2.7)", "listed.example (192.0.2.7)"));
  EXPECT_EQ(list_.view(), std::string(255, 'L')) << "a name without an end is cut";
  EXPECT_EQ(reported_, " Message A.MAI has link to blacklisted IP. listed.example (192.0.2.7) was found in blacklist " +
                           std::string(255, 'L') + "\n");
}

TEST_F(FindBlacklistedLinkTest, CutsAHostAbove200CharactersInTheReport) {
  for (const std::size_t length : {200U, 201U, 1023U}) {
    const std::string host = "listed" + std::string(length - 6, 'h');
    EXPECT_EQ(find("http://" + host), 1);
    const std::string shown = length == 200 ? host : host.substr(0, 200) + "...";
    EXPECT_THAT(reported_, testing::HasSubstr("IP. " + shown + " (192.0.2.7) was")) << length;
  }
}

struct LimitCase {
  std::uint32_t most;
  std::uint32_t before;  // look-ups of earlier lines
  std::size_t made;
  std::uint32_t after;
};

TEST_F(FindBlacklistedLinkTest, StopsALineAboveTheLimit) {
  const LimitCase cases[] = {{0, 0, 2, 2}, {0, 2, 1, 3}, {1, 0, 3, 3}, {3, 0, 5, 5}, {5, 0, 5, 5}, {5, 6, 1, 7}};
  for (const LimitCase& c : cases) {
    settings().uri_sbl_max_checks = c.most;
    asked().clear();
    look_ups_ = c.before;
    EXPECT_EQ(find("http://a http://b http://c http://d http://e"), 0);
    EXPECT_EQ(asked().size(), c.made) << c.most << " after " << c.before;
    EXPECT_EQ(look_ups_, c.after) << c.most << " after " << c.before;
  }
}

std::int32_t throwing_look_up(const char*, const char*, char*, char*) {
  throw 42;
}

TEST_F(FindBlacklistedLinkTest, LetsAnExceptionOfTheLookUpThrough) {
  EXPECT_THROW(FindBlacklistedLink("A.MAI", look_ups_, "http://a", list_, &throwing_look_up), int);
  EXPECT_EQ(look_ups_, 0U);
}

TEST(PercentDecoding, ReplacesEscapesOnly) {
  const struct {
    const char* what;
    const char* text;
    const char* decoded;
  } cases[] = {
      {"nothing to decode", "a+b", "a+b"},
      {"digits in either case", "%4a%4A%2e", "JJ."},
      {"no digits: dropped", "%zz%", "zz"},
      {"one digit: dropped", "%4g", "4g"},
      {"one digit at the end", "a%4", "a4"},
      {"at the end", "a%", "a"},
      {"before an escape", "%%41", "A"},
      {"what is decoded is not decoded again", "%2541", "%41"},
      {"an escape at the end", "%41%42", "AB"},
      {"bytes above 127", "%fF", "\xff"},
      {"nothing", "", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(percent_decode(c.text), c.decoded) << c.what;
}

}  // namespace
}  // namespace pv
