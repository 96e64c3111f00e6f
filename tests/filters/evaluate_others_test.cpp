#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "filters/evaluation.h"
#include "filters/evaluation_fixture.h"
#include "filters/printed_by.h"

namespace pv {
namespace {

using EvaluateHasAttachmentTest = test::Evaluation;
using EvaluateSizeTest = test::Evaluation;
using EvaluateNumberEqualsTest = test::Evaluation;
using EvaluateTagTest = test::Evaluation;

TEST_F(EvaluateHasAttachmentTest, CountsOncePerMessage) {
  add(kHasAnAttachment, "", 2);
  add(kHasAnAttachment, "", 1, 0);
  const auto line = [&](std::string_view text) {
    return test::printed_by([&] { EvaluateHasAttachment(kHasAnAttachment, text, "", set, results); });
  };
  EXPECT_EQ(line("Content-Type: text/plain\r\n"), "");
  EXPECT_EQ(count(kHasAnAttachment), 0);
  EXPECT_EQ(values(kHasAnAttachment, 3), "[0][0][]");

  EXPECT_EQ(line("Content-Disposition: x; FileName=a\r\n"), "Message Body Has Attachment Criteria Met\n");
  EXPECT_EQ(matched(kHasAnAttachment), "<MF-HA>1</MF-HA>");
  EXPECT_EQ(line("name=b\r\n"), "");
  EXPECT_EQ(line("Content-Type: text/plain\r\n"), "");
  EXPECT_EQ(count(kHasAnAttachment), 1);
  EXPECT_EQ(values(kHasAnAttachment, 3), "[1][1][]");
  EXPECT_EQ(count(kHasAnAttachment, 2), 0);
  EXPECT_EQ(values(kHasAnAttachment, 1, 2), "[]");
}

struct SizeCase {
  const char* what;
  std::string_view data;
  int entry_count;
  std::int32_t size_bytes;
  int count;
  std::string_view matched;
  std::string_view values;  // of the first two entries
};

constexpr SizeCase kSizes[] = {
    {"above", "100000", 1, 250000, 1, "<SZ>250000</SZ><SZL>100000</SZL>", "[1][]"},
    {"at the limit", "100000", 1, 100000, 0, "", "[0][]"},
    {"one above the limit", "100000", 1, 100001, 1, "<SZ>100001</SZ><SZL>100000</SZL>", "[1][]"},
    {"the line end stays in the text", "5\n", 1, 9, 1, "<SZ>9</SZ><SZL>5\n</SZL>", "[1][]"},
    {"no number is no limit", "many", 1, 9, 1, "<SZ>9</SZ><SZL>many</SZL>", "[1][]"},
    {"nothing is above nothing", "", 1, 0, 0, "", "[0][]"},
    {"the first number decides the count", "100\t5", 2, 9, 0, "", "[0][1]"},
    {"a limit written with a comma", "5\t100", 1, 9, 1, "<SZ>9</SZ><SZL>5\t100</SZL>", "[1][]"},
    {"the script asks for the size", "\r", 1, 1234, 1, "<SZ>1234</SZ><SZL>\r</SZL>", "[1234][]"},
    {"and for a limit, which decides the count", "\r\t2000", 2, 1234, 0, "", "[1234][0]"},
    {"a second entry that is not there", "100", 2, 9, 0, "", "[0][1]"},
    {"the largest size", "2147483646", 1, 2147483647, 1, "<SZ>2147483647</SZ><SZL>2147483646</SZL>", "[1][]"},
};

TEST_F(EvaluateSizeTest, SaysWhetherTheLimitIsExceeded) {
  for (const SizeCase& c : kSizes) {
    only(kSize, c.data, c.entry_count);
    const std::string output = test::printed_by([&] { EvaluateSize(kSize, c.size_bytes, set, results); });
    EXPECT_EQ(output, "Message Size detected as " + std::to_string(c.size_bytes) + "\r\n") << c.what;
    EXPECT_EQ(count(kSize), c.count) << c.what;
    EXPECT_EQ(matched(kSize), c.matched) << c.what;
    EXPECT_EQ(values(kSize, 2), c.values) << c.what;
  }
}

TEST_F(EvaluateSizeTest, SetsTheCountAndKeepsWithinTheText) {
  add(kSize, "1\t9" + std::string(2000, ' '), 2);
  add(kSize, "1", 1, 0);
  EvaluateSize(kSize, 7, set, results);
  EvaluateSize(kSize, 7, set, results);
  EXPECT_EQ(count(kSize), 1);
  EXPECT_EQ(matched(kSize).size(), 1023U);
  EXPECT_EQ(values(kSize, 2), "[1][1]");  // the second field is too long to be read, so its limit is 0
  EXPECT_EQ(count(kSize, 2), 0);
}

TEST_F(EvaluateSizeTest, IsPrintedWithoutFilters) {
  EXPECT_EQ(test::printed_by([&] { EvaluateSize(kSize, 12, set, results); }), "Message Size detected as 12\r\n");
}

struct NumberCase {
  const char* what;
  std::string_view data;
  int entry_count;
  std::int32_t number;
  int count;
  std::string_view values;
};

constexpr NumberCase kNumbers[] = {
    {"equal", "1", 1, 1, 1, "[1][]"},
    {"not equal", "1", 1, 2, 0, "[2][]"},
    {"equal up to the line end", "2\n", 1, 2, 1, "[2][]"},
    {"no number is 0", "\r", 2, 0, 1, "[0][0]"},
    {"the first entry decides, all receive the number", "1\t-3", 2, -3, 0, "[-3][-3]"},
    {"no entries", "1", 0, 1, 1, "[][]"},
};

TEST_F(EvaluateNumberEqualsTest, CountsEqualNumbers) {
  for (const NumberCase& c : kNumbers) {
    only(kSenderAuth, c.data, c.entry_count);
    add(kSenderAuth, c.data, c.entry_count, 0);
    EvaluateNumberEquals(kSenderAuth, c.number, set, results);
    EXPECT_EQ(count(kSenderAuth), c.count) << c.what;
    EXPECT_EQ(matched(kSenderAuth), c.count > 0 ? "<MF-ES>1</MF-ES>" : "") << c.what;
    EXPECT_EQ(values(kSenderAuth, 2), c.values) << c.what;
    EXPECT_EQ(count(kSenderAuth, 2), 0) << c.what << ", not in use";
  }
}

TEST_F(EvaluateTagTest, MatchesWhateverTheValuesAre) {
  add(kAllMessages, "nothing", 2);
  add(kAllMessages, "", 1, 0);
  EvaluateTag(kAllMessages, tag::kAll, "All Messages", set, results);
  EXPECT_EQ(count(kAllMessages), 1);
  EXPECT_EQ(matched(kAllMessages), "<MF-ALL>All Messages</MF-ALL>");
  EXPECT_EQ(values(kAllMessages, 3), "[1][1][]");
  EvaluateTag(kAllMessages, tag::kAll, std::string(2000, 'x'), set, results);
  EXPECT_EQ(count(kAllMessages), 2);
  EXPECT_EQ(matched(kAllMessages), "<MF-ALL>" + std::string(1015, 'x'));
  EXPECT_EQ(count(kAllMessages, 2), 0);
}

// The addresses below, each on one list.
class EvaluateWhitelistedIpTest : public test::Evaluation {
 protected:
  EvaluateWhitelistedIpTest() {
    server.set_text(R"(SOFTWARE\Post Vane\Post Vane\Connectors\SMTP\White List)", "10.*.*.*", "");
    server.set_number(kSmtpKey, "Whitelist Outbound IPAddresses", 1);
    server.write("conf/Connections/Whitelist/192.0.2.1.tab", "");
    server.write("conf/Postoffices/po/Connections/Whitelist/192.0.2.2.tab", "");
    server.write("conf/Postoffices/po/Mailboxes/box/Connections/Whitelist/192.0.2.3.tab", "");
    read_server_settings();
  }
};

constexpr std::string_view kOnSystemList = "10.1.2.3";
constexpr std::string_view kOnServerList = "192.0.2.1";
constexpr std::string_view kOnPostofficeList = "192.0.2.2";
constexpr std::string_view kOnMailboxList = "192.0.2.3";

struct WhitelistCase {
  const char* what;
  std::string_view data;
  std::string_view client_ip;
  std::string_view account;
  std::string_view mailbox;
  int count;
};

constexpr WhitelistCase kWhitelists[] = {
    {"1, system list", "1", kOnSystemList, "", "", 1},
    {"1, server's list", "1", kOnServerList, "po", "", 1},
    {"1, postoffice's list", "1", kOnPostofficeList, "po", "", 1},
    {"1, mailbox's list", "1", kOnMailboxList, "po", "box", 1},
    {"1, no account", "1", kOnPostofficeList, "", "", 0},
    {"2, server's list", "2", kOnServerList, "po", "", 0},
    {"2, server's list without an account", "2", kOnServerList, "", "", 1},
    {"2, postoffice's list", "2", kOnPostofficeList, "po", "", 1},
    {"2, a mailbox asks its own list alone", "2", kOnPostofficeList, "po", "box", 0},
    {"2, mailbox's list", "2", kOnMailboxList, "po", "box", 1},
    {"only the first character counts", "1x", kOnSystemList, "", "", 1},
    {"no other character asks", "3\t 1\tx", kOnSystemList, "", "", 0},
    {"no address", "1", "", "", "", 0},
    {"on no list", "1\t2", "192.0.2.9", "po", "box", 0},
    {"words after a hit count, empty ones too", "x\t1\tx\t\t2", kOnSystemList, "", "", 4},
    {"a later check clears no hit", "1\t2", kOnServerList, "po", "", 2},
};

TEST_F(EvaluateWhitelistedIpTest, AsksTheListsOfTheWord) {
  for (const WhitelistCase& c : kWhitelists) {
    only(kIpAddressWhitelisted, c.data);
    results.match(1).set_matched_text(kIpAddressWhitelisted, "old");
    EvaluateWhitelistedIp(kIpAddressWhitelisted, c.account, c.mailbox, c.client_ip, set, results);
    EXPECT_EQ(count(kIpAddressWhitelisted), c.count) << c.what;
    EXPECT_EQ(matched(kIpAddressWhitelisted), c.count > 0 ? "" : "old") << c.what;
    EXPECT_EQ(values(kIpAddressWhitelisted, 1), c.count > 0 ? "[1]" : "[]") << c.what;
  }
}

TEST_F(EvaluateWhitelistedIpTest, AHitHoldsForTheFiltersThatFollow) {
  add(kIpAddressWhitelisted, "x");
  add(kIpAddressWhitelisted, "x\t1", 2);
  add(kIpAddressWhitelisted, "x\ty");
  add(kIpAddressWhitelisted, "x", 1, 0);
  EvaluateWhitelistedIp(kIpAddressWhitelisted, "", "", kOnServerList, set, results);
  EXPECT_EQ(count(kIpAddressWhitelisted, 1), 0);
  EXPECT_EQ(count(kIpAddressWhitelisted, 2), 1);
  EXPECT_EQ(values(kIpAddressWhitelisted, 2, 2), "[][1]");
  EXPECT_EQ(count(kIpAddressWhitelisted, 3), 2);
  EXPECT_EQ(count(kIpAddressWhitelisted, 4), 0);
  start_message();
  EvaluateWhitelistedIp(kIpAddressWhitelisted, "", "", "192.0.2.9", set, results);
  EXPECT_EQ(count(kIpAddressWhitelisted, 3), 0);
}

TEST_F(EvaluateWhitelistedIpTest, TheSystemListReportsEveryTimeItIsAsked) {
  server.set_number(kAgentKey, "Activity Log Enabled", 2);
  add(kIpAddressWhitelisted, "1\tx\t2");
  const std::string output =
      test::printed_by([&] { EvaluateWhitelistedIp(kIpAddressWhitelisted, "", "", kOnSystemList, set, results); });
  const std::string line =
      " PV-I0092: 10.1.2.3 is registered in the system whitelist and was therefore excluded from checking\n";
  EXPECT_EQ(output, line + line);
}

}  // namespace
}  // namespace pv
