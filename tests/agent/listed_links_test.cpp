// Links of messages, asked about in a DNS look-up library.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "agent/loaded_agent.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "platform/output_capture.h"

namespace pv {
namespace {

using test::LoadedAgent;
using test::report_log;
using test::ServerTree;
using testing::HasSubstr;
using testing::Not;

constexpr char kCommand[] = "Sender=[SMTP:ann@example.com]\r\n";

// A server with the library and one filter, which marks messages with a listed link. Hosts are written as addresses, so
// that no name server is asked.
void prepare(const ServerTree& server, const char* definition = "links") {
  server.set_number(kAgentKey, "Activity Log Enabled", 1);
  server.set_number(kAgentKey, "Perform SBLRBL", 1);
  server.set_text(kRootKey, "Application Directory", DNS_LIBRARY_DIRECTORY);
  server.filters({definition});
  server.criteria("links", {{kUrlBl, ""}});
  server.criteria("phrases", {{kSubject, "offer"}});
  server.actions(definition, {{"ADD_HEADER", "X-Listed|[PV_MF-SBLURI]"}});
}

std::string message_with(const std::string& link) {
  return "Subject: offer\r\n\r\nsee " + link + " today\r\n";
}

void execute(const LoadedAgent& agent, const std::string& message_id) {
  platform::OutputCapture output;
  EXPECT_EQ(agent.execute(message_id), 1);
}

TEST(ListedLinks, FireTheFilter) {
  const ServerTree server;
  prepare(server);
  server.queue("A.MAI", kCommand, message_with("http://192.0.2.1/offer"));
  server.queue("B.MAI", kCommand, message_with("http://192.0.2.99/offer"));
  const LoadedAgent agent(server);
  execute(agent, "A.MAI");
  execute(agent, "B.MAI");
  EXPECT_THAT(server.message("A.MAI"), HasSubstr("X-Listed: list.example\r\n"));
  EXPECT_THAT(server.message("B.MAI"), Not(HasSubstr("X-Listed")));
  EXPECT_THAT(
      report_log(server),
      HasSubstr("Message A.MAI has link to blacklisted IP. 192.0.2.1 (192.0.2.1) was found in blacklist list.example"));
}

TEST(ListedLinks, AreReportedWithoutAFilterForThem) {
  const ServerTree server;
  prepare(server, "phrases");
  server.queue("A.MAI", kCommand, message_with("http://192.0.2.1"));
  {
    const LoadedAgent agent(server);
    execute(agent, "A.MAI");
  }
  EXPECT_THAT(report_log(server), HasSubstr("was found in blacklist list.example"));
}

TEST(ListedLinks, AreLookedUpOnlyWhenTheSettingSaysSo) {
  const ServerTree server;
  prepare(server);
  server.set_number(kAgentKey, "Perform SBLRBL", 0);
  server.queue("A.MAI", kCommand, message_with("http://192.0.2.1"));
  const LoadedAgent agent(server);
  execute(agent, "A.MAI");
  EXPECT_EQ(server.message("A.MAI"), message_with("http://192.0.2.1"));
  EXPECT_THAT(report_log(server), Not(HasSubstr("blacklist")));
}

struct ThrownCase {
  const char* link;
  const char* reported;
};

TEST(ListedLinks, AnExceptionOfTheLibraryLeavesTheMessageAsItIs) {
  if (!DNS_LIBRARIES_THROW) GTEST_SKIP() << "exceptions do not leave a library of this system";
  const ThrownCase cases[] = {
      {"http://192.0.2.11", "HasORBDBEntry handled an exception; session will be dropped.\r\n"},
      {"http://192.0.2.12", "HasORBDBEntry handled a COM error.\r\n"},
      {"http://192.0.2.13", "HasORBDBEntry raised an exception.\r\n"},
  };
  const ServerTree server;
  prepare(server, "phrases");  // which would fire, had the message been read to its end
  const LoadedAgent agent(server);
  for (const ThrownCase& c : cases) {
    server.queue("A.MAI", kCommand, message_with(c.link));
    execute(agent, "A.MAI");
    EXPECT_EQ(server.message("A.MAI"), message_with(c.link)) << c.link;
    EXPECT_THAT(report_log(server), HasSubstr(c.reported)) << c.link;
  }
  EXPECT_THAT(server.names("queues/SMTP/Inbound/Messages"), testing::ElementsAre("A.MAI"));
  server.queue("B.MAI", kCommand, message_with("http://192.0.2.99"));
  execute(agent, "B.MAI");
  EXPECT_THAT(server.message("B.MAI"), HasSubstr("X-Listed")) << "the next message is filtered as ever";
}

TEST(ListedLinksConcurrent, EachMessageHasItsOwnLookUps) {
  constexpr int kThreads = 4;
  constexpr int kMessages = 10;  // of each thread
  const ServerTree server;
  prepare(server);
  server.set_number(kAgentKey, "URI SBL Max Checks", 1);
  const LoadedAgent agent(server);
  const auto name = [](int thread, int message) { return std::to_string(thread) + "-" + std::to_string(message); };
  const auto is_listed = [](int thread, int message) { return (thread + message) % 2 == 0; };
  for (int t = 0; t < kThreads; ++t) {
    for (int m = 0; m < kMessages; ++m) {
      // The listed host is the third look-up, the last that the limit leaves.
      const std::string third = is_listed(t, m) ? "http://192.0.2.1" : "http://192.0.2.99 http://192.0.2.1";
      server.queue(name(t, m), kCommand, message_with("http://192.0.2.97 http://192.0.2.98 " + third));
    }
  }
  {
    platform::OutputCapture output;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
      threads.emplace_back([&, t] {
        for (int m = 0; m < kMessages; ++m) EXPECT_EQ(agent.execute(name(t, m)), 1);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  for (int t = 0; t < kThreads; ++t) {
    for (int m = 0; m < kMessages; ++m) {
      const bool marked = server.message(name(t, m)).find("X-Listed") != std::string::npos;
      EXPECT_EQ(marked, is_listed(t, m)) << name(t, m);
    }
  }
}

}  // namespace
}  // namespace pv
