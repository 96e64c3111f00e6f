// Whatever bytes the queue and the tables hold, FilterExecute answers 1 and the message is there, whole.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "agent/loaded_agent.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"

namespace pv {
namespace {

using std::string_literals::operator""s;

using test::LoadedAgent;
using test::report_log;
using test::ServerTree;
using testing::HasSubstr;

constexpr char kCommand[] = "Sender=[SMTP:ann@example.com]\r\n";

// Every criterion is in use, and the one filter marks each message.
void prepare(const ServerTree& server) {
  server.set_number(kAgentKey, "Activity Log Enabled", 1);
  server.filters({"all"});
  server.criteria("all", {{kSubject, "*a*"},
                          {kBody, "**,x*y*z,free"},
                          {kTo, "*e*"},
                          {kCc, "*e*"},
                          {kToOrCc, "*e*"},
                          {kPriority, "High"},
                          {kFrom, "*e*"},
                          {kSize, "1"},
                          {kHasAttachmentsMatching, "*"},
                          {kHasAnAttachment, ""},
                          {kHeadersContain, "*a*"},
                          {kAllMessages, ""},
                          {kIpAddress, "*"},
                          {kBoundaryHeadersContain, "*a*"},
                          {kIpAddressWhitelisted, "1"}});
  server.actions("all", {{"ADD_HEADER", "X-Seen|yes"}});
}

struct MessageCase {
  const char* what;
  std::string command;
  std::string message;
};

std::vector<MessageCase> hostile_messages() {
  const std::string long_line(1 << 20, 'a');
  return {
      {"an empty message", kCommand, ""},
      {"NUL bytes everywhere", "Sender=\0x\nSubject=\0\n"s, "Sub\0ject: a\r\n\0\r\n\r\n\0free\0"s},
      {"no blank line", kCommand, "Subject: a\r\nFrom: b"},
      {"bare line feeds", kCommand, "Subject: a\nFrom: b\n folded\n\nfree\n"},
      {"bare carriage returns", kCommand, "Subject: a\rFrom: b\r\rfree\r"},
      {"header lines of a megabyte", kCommand, "From: " + long_line + "\r\nX: " + long_line + "\r\n\r\nbody\r\n"},
      {"a body line of a megabyte", kCommand, "Subject: a\r\n\r\n" + long_line},
      {"a command file of one long line", "Recipients=" + long_line, "Subject: a\r\n\r\nbody\r\n"},
      {"a truncated command file", "Sender=[SMTP:ann@exam", "Subject: a\r\n\r\nbody\r\n"},
      {"a multipart message that ends in a part header", kCommand,
       "Content-Type: multipart/mixed; boundary=\"b\r\n\r\n--b\r\nContent-Type: x; name=\"unclosed"},
  };
}

TEST(BadInput, NoMessageIsLostOrHalfWritten) {
  const ServerTree server;
  prepare(server);
  const LoadedAgent agent(server);
  for (const MessageCase& c : hostile_messages()) {
    server.queue("A.MAI", c.command, c.message);
    testing::internal::CaptureStdout();
    EXPECT_EQ(agent.execute("A.MAI"), 1) << c.what;
    testing::internal::GetCapturedStdout();
    // One line was put in and nothing else changed: without it the message is the one that was queued.
    std::string now = server.message("A.MAI");
    const std::size_t header = now.find("X-Seen: yes\r\n");
    ASSERT_NE(header, std::string::npos) << c.what;
    now.erase(header, 13);
    const bool unchanged = now == c.message;
    const bool header_block_closed = now.starts_with(c.message) && now.size() <= c.message.size() + 4;
    const std::string::size_type blank = header;
    const bool line_end_normalised = now.substr(0, blank) == c.message.substr(0, blank) &&
                                     now.ends_with(c.message.substr(std::min(blank + 1, c.message.size())));
    EXPECT_TRUE(unchanged || header_block_closed || line_end_normalised) << c.what;
    EXPECT_EQ(server.names("queues/SMTP/Inbound/Messages").size(), 1u) << c.what << ": a temporary file is left";
  }
}

TEST(BadInput, NamesThatFitNoFieldAreRefused) {
  const ServerTree server;
  prepare(server);
  const std::string longest(63, 'L');
  server.queue(longest, kCommand, "Subject: a\r\n\r\n");
  server.queue(longest + "L", kCommand, "Subject: a\r\n\r\n");
  const LoadedAgent agent(server);
  EXPECT_EQ(agent.execute(longest + "L"), 1);
  EXPECT_EQ(server.message(longest), "Subject: a\r\n\r\n") << "a cut name is another message's";
  EXPECT_THAT(report_log(server), HasSubstr("is not filtered"));
  EXPECT_EQ(agent.execute(longest), 1);
  EXPECT_THAT(server.message(longest), HasSubstr("X-Seen"));
  EXPECT_EQ(agent.execute(longest, std::string(2000, 'C')), 1);
  EXPECT_EQ(agent.execute("", ""), 1);
  auto* execute = agent.find<decltype(FilterExecute)>("FilterExecute");
  EXPECT_EQ(execute(nullptr, nullptr, nullptr, 0), 1);
}

TEST(BadInput, TablesThatAreNoneLeaveTheMessageAlone) {
  struct TableCase {
    const char* what;
    std::string bytes;
  };
  const TableCase cases[] = {
      {"a line of a megabyte", std::string(1 << 20, 'x')},
      {"NUL bytes", "a\0\t1\ta\t\0\ta\t\n"s},
      {"UTF-16",
       "\xFF\xFE"
       "a\0\t\0"
       "1\0\t\0"
       "a\0\n\0"s},
      {"no tabs", "filter one\nfilter two\n"},
      {"only tabs", std::string(100000, '\t')},
  };
  for (const TableCase& c : cases) {
    for (const char* table : {"FILTER.TAB", "CRITERIA/all.TAB", "ACTIONS/all.TAB"}) {
      const ServerTree server;
      prepare(server);
      server.write(std::string("conf/FILTERS/") + table, c.bytes);
      server.queue("A.MAI", kCommand, "Subject: a\r\n\r\nbody\r\n");
      const LoadedAgent agent(server);
      testing::internal::CaptureStdout();
      EXPECT_EQ(agent.execute("A.MAI"), 1) << c.what << " in " << table;
      testing::internal::GetCapturedStdout();
      EXPECT_EQ(server.message("A.MAI"), "Subject: a\r\n\r\nbody\r\n") << c.what << " in " << table;
    }
  }
}

TEST(BadInput, DirectoriesInPlaceOfFilesAreNoFiles) {
  for (const char* file : {"conf/FILTERS/FILTER.TAB", "conf/FILTERS/CRITERIA/all.TAB", "conf/FILTERS/ACTIONS/all.TAB",
                           "queues/SMTP/Inbound/A.MAI", "queues/SMTP/Inbound/Messages/A.MAI"}) {
    const ServerTree server;
    prepare(server);
    server.queue("A.MAI", kCommand, "Subject: a\r\n\r\nbody\r\n");
    server.remove(file);
    server.make_directory(file);
    const LoadedAgent agent(server);
    EXPECT_EQ(agent.execute("A.MAI"), 1) << file;
  }
}

TEST(BadInput, AReportDirectoryThatVanishesStopsNoMail) {
  const ServerTree server;
  prepare(server);
  server.queue("A.MAI", kCommand, "Subject: a\r\n\r\nbody\r\n");
  const LoadedAgent agent(server);
  if (!server.remove("logs")) GTEST_SKIP() << "this system keeps the directory of an open file";
  EXPECT_EQ(agent.execute("A.MAI"), 1);
  EXPECT_THAT(server.message("A.MAI"), HasSubstr("X-Seen: yes\r\n"));
  server.make_directory("logs");
}

TEST(BadInput, ASettingsFileThatVanishesLeavesTheDefaults) {
  const ServerTree server;
  prepare(server);
  server.queue("A.MAI", kCommand, "Subject: a\r\n\r\nbody\r\n");
  const LoadedAgent agent(server);
  server.write("settings.reg", "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Post V");
  EXPECT_EQ(agent.execute("A.MAI"), 1);
  server.remove("settings.reg");
  EXPECT_EQ(agent.execute("A.MAI"), 1);
  EXPECT_EQ(server.message("A.MAI"), "Subject: a\r\n\r\nbody\r\n");
}

}  // namespace
}  // namespace pv
