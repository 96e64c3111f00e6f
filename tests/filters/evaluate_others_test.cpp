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

using Evaluators = test::Evaluation;

TEST_F(Evaluators, LeaveFiltersAloneThatDoNotUseTheSlot) {
  for (const int status : {0, 2, -1}) {
    only(kSubject, "1", 1, status);
    EvaluateWordList(kSubject, "1", "", set, results);
    EvaluateHasAttachment(kSubject, "name=1", "", set, results);
    EvaluateSize(kSubject, 9, set, results);
    EvaluateNumberEquals(kSubject, 1, set, results);
    EvaluateTag(kSubject, tag::kAll, "1", set, results);
    EXPECT_EQ(found(kSubject), "0[][]") << status;
  }
}

TEST_F(Evaluators, HasAttachmentCountsOncePerMessage) {
  add(kBody, "", 2);
  const auto line = [&](std::string_view text) {
    return test::printed_by([&] { EvaluateHasAttachment(kBody, text, "", set, results); });
  };
  EXPECT_EQ(line("Content-Type: text/plain\r\n"), "");
  EXPECT_EQ(found(kBody), "0[0][0]");
  EXPECT_EQ(line("Content-Disposition: x; FileName=a\r\n"), "Message Body Has Attachment Criteria Met\n");
  EXPECT_EQ(line("name=b\r\n"), "");
  EXPECT_EQ(line("Content-Type: text/plain\r\n"), "");
  EXPECT_EQ(found(kBody), "1<MF-HA>1</MF-HA>[1][1]");
}

struct NumberCase {
  const char* what;
  std::string_view data;
  int entry_count;
  std::int32_t number;
  std::string_view found;
};

constexpr NumberCase kSizes[] = {
    {"at the limit", "100000", 1, 100000, "0[0][]"},
    {"one above the limit", "100000", 1, 100001, "1<SZ>100001</SZ><SZL>100000</SZL>[1][]"},
    {"the line end stays in the text", "5\n", 1, 9, "1<SZ>9</SZ><SZL>5\n</SZL>[1][]"},
    {"nothing is above nothing", "", 1, 0, "0[0][]"},
    {"the first number decides the count", "100\t5", 2, 9, "0[0][1]"},
    {"the script asks for the size", "\r", 1, 1234, "1<SZ>1234</SZ><SZL>\r</SZL>[1234][]"},
    {"and for a limit, which decides the count", "\r\t2000", 2, 1234, "0[1234][0]"},
    {"a second entry that is not there", "100", 2, 9, "0[0][1]"},
    {"the largest size", "2147483646", 1, 2147483647, "1<SZ>2147483647</SZ><SZL>2147483646</SZL>[1][]"},
};

TEST_F(Evaluators, SizeSaysWhetherTheLimitIsExceeded) {
  for (const NumberCase& c : kSizes) {
    only(kSize, c.data, c.entry_count);
    const std::string output = test::printed_by([&] { EvaluateSize(kSize, c.number, set, results); });
    EXPECT_EQ(output, "Message Size detected as " + std::to_string(c.number) + "\r\n") << c.what;
    EXPECT_EQ(found(kSize), c.found) << c.what;
  }
}

TEST_F(Evaluators, SizeSetsTheCountAndKeepsWithinTheText) {
  add(kSize, "1\t9" + std::string(2000, ' '), 2);  // the second field is too long to be read, so its limit is 0
  const std::string text = "<SZ>7</SZ><SZL>1\t9" + std::string(1005, ' ');
  for (int twice = 0; twice < 2; ++twice) {
    EvaluateSize(kSize, 7, set, results);
    EXPECT_EQ(found(kSize), "1" + text + "[1][1]");
  }
}

constexpr NumberCase kNumbers[] = {
    {"not equal", "1", 1, 2, "0[2][]"},
    {"equal up to the line end", "2\n", 1, 2, "1<MF-ES>1</MF-ES>[2][]"},
    {"no number is 0", "\r", 2, 0, "1<MF-ES>1</MF-ES>[0][0]"},
    {"the first entry decides, all receive the number", "1\t-3", 2, -3, "0[-3][-3]"},
};

TEST_F(Evaluators, NumberEqualsCountsEqualNumbers) {
  for (const NumberCase& c : kNumbers) {
    only(kSenderAuth, c.data, c.entry_count);
    EvaluateNumberEquals(kSenderAuth, c.number, set, results);
    EXPECT_EQ(found(kSenderAuth), c.found) << c.what;
  }
}

TEST_F(Evaluators, TagMatchesWhateverTheValuesAre) {
  add(kAllMessages, "nothing", 2);
  for (const int number : {1, 2}) {
    EvaluateTag(kAllMessages, tag::kAll, "All Messages", set, results);
    EXPECT_EQ(found(kAllMessages), std::to_string(number) + "<MF-ALL>All Messages</MF-ALL>[1][1]");
  }
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

constexpr SlotIndex kSlot = kIpAddressWhitelisted;
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
    {"1, server's list", "1", kOnServerList, "po", "", 1},
    {"1, mailbox's list", "1", kOnMailboxList, "po", "box", 1},
    {"1, no account", "1", kOnPostofficeList, "", "", 0},
    {"2, server's list", "2", kOnServerList, "po", "", 0},
    {"2, server's list without an account", "2", kOnServerList, "", "", 1},
    {"2, a mailbox asks its own list alone", "2", kOnPostofficeList, "po", "box", 0},
    {"only the first character counts", "1x", kOnSystemList, "", "", 1},
    {"no other character asks", "3\t 1\tx", kOnSystemList, "", "", 0},
    {"no address", "1", "", "", "", 0},
    {"words after a hit count, empty ones too", "x\t1\tx\t\t2", kOnSystemList, "", "", 4},
    {"a later check clears no hit", "1\t2", kOnServerList, "po", "", 2},
};

TEST_F(EvaluateWhitelistedIpTest, AsksTheListsOfTheWord) {
  for (const WhitelistCase& c : kWhitelists) {
    only(kSlot, c.data);
    results.match(1).set_matched_text(kSlot, "old");
    EvaluateWhitelistedIp(kSlot, c.account, c.mailbox, c.client_ip, set, results);
    EXPECT_EQ(found(kSlot), c.count > 0 ? std::to_string(c.count) + "[1][]" : "0old[][]") << c.what;
  }
}

TEST_F(EvaluateWhitelistedIpTest, AHitHoldsForTheFiltersThatFollow) {
  add(kSlot, "x");
  add(kSlot, "x\t1", 2);
  add(kSlot, "x\ty");
  EvaluateWhitelistedIp(kSlot, "", "", kOnServerList, set, results);
  EXPECT_EQ(found(kSlot, 1), "0[][]");
  EXPECT_EQ(found(kSlot, 2), "1[][1]");
  EXPECT_EQ(found(kSlot, 3), "2[1][]");
}

TEST_F(EvaluateWhitelistedIpTest, TheSystemListReportsEveryTimeItIsAsked) {
  server.set_number(kAgentKey, "Activity Log Enabled", 2);
  add(kSlot, "1\tx\t2");
  const std::string output =
      test::printed_by([&] { EvaluateWhitelistedIp(kSlot, "", "", kOnSystemList, set, results); });
  const std::string line =
      " PV-I0092: 10.1.2.3 is registered in the system whitelist and was therefore excluded from checking\n";
  EXPECT_EQ(output, line + line);
}

}  // namespace
}  // namespace pv
