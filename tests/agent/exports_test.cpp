#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/loaded_agent.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "platform/com.h"

namespace pv {
namespace {

using test::LoadedAgent;
using test::report_log;
using test::ServerTree;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr char kCommand[] =
    "Recipients=[SMTP:jane@example.org]\r\nSender=[SMTP:ann@example.com]\r\nClientIP=192.0.2.7\r\nSubject=Hello\r\n";
constexpr char kMessage[] = "From: ann@example.com\r\nSubject: Hello\r\n\r\nThis is free\r\n";

// A server whose one filter looks for "free" in the body and adds a header.
void prepare(const ServerTree& server) {
  server.set_number(kAgentKey, "Activity Log Enabled", 1);
  server.filters({"words"});
  server.criteria("words", {{kBody, "free"}});
  server.actions("words", {{"ADD_HEADER", "X-Found|[PV_MF-W] from [PV_SENDER]"}});
}

TEST(Exports, AMessageIsFilteredAndReported) {
  const ServerTree server;
  prepare(server);
  server.queue("A.MAI", kCommand, kMessage);
  {
    const LoadedAgent agent(server);
    EXPECT_EQ(agent.execute("A.MAI"), 1);
  }
  EXPECT_EQ(server.message("A.MAI"),
            "From: ann@example.com\r\nSubject: Hello\r\nX-Found: free from ann@example.com\r\n\r\nThis is free\r\n");
  EXPECT_THAT(report_log(server),
              HasSubstr("\tExecuted\tA.MAI\tSMTP\twords filter\tADD_HEADER\t\t[SMTP:ann@example.com]\t192.0.2.7\t"
                        "CRITERIA=BODY, DATA=<MF-W>free</MF-W>\tHello\r\n"));
}

TEST(Exports, UnloadingWritesTheEndLineEachTime) {
  const ServerTree server;
  prepare(server);
  for (int round = 1; round <= 3; ++round) {
    const std::size_t before = report_log(server).size();
    { const LoadedAgent agent(server); }
    const std::string added = report_log(server).substr(before);
    EXPECT_THAT(added, HasSubstr("\tStart\t-\t-\t-\t-\t-\t-\t-\t-\r\n")) << "round " << round;
    EXPECT_THAT(added, EndsWith("\tEnd\t-\t-\t-\t-\t-\t-\t-\t-\r\n")) << "round " << round;
  }
}

// Where standard output is a text stream, every line feed arrived with a carriage return before it.
std::string as_written(std::string output) {
  if (output.find("\r\r\n") == std::string::npos) return output;
  for (std::size_t at = output.find("\r\n"); at != std::string::npos; at = output.find("\r\n", at + 1))
    output.erase(at, 1);
  return output;
}

TEST(Exports, StandardOutputTellsTheRoadOfAMessage) {
  const ServerTree server;
  prepare(server);
  server.queue("A.MAI", kCommand, kMessage);
  const LoadedAgent agent(server);
  testing::internal::CaptureStdout();
  agent.execute("A.MAI");
  EXPECT_EQ(as_written(testing::internal::GetCapturedStdout()),
            "Allocating 1 Results\n"
            "Processing Message... \r\n"
            "Message Size detected as 55\r\n"
            "Processing Message Content... \r\n"
            "From Found:ann@example.com\r\n\n"
            "Message General Criteria met against [free] in specified word list.\n"
            "All for rule (words) satisfied. Executing associated action (words).\n"
            "ProcessFilter: Executed\tA.MAI\tSMTP\twords filter\tADD_HEADER\t\t[SMTP:ann@example.com]\t192.0.2.7\t"
            "CRITERIA=BODY, DATA=<MF-W>free</MF-W>\tHello\n\n"
            "Releasing 1 Results\n");
}

TEST(Exports, AMarkedMessageIsLeftAlone) {
  const ServerTree server;
  prepare(server);
  const std::string marked = std::string("X-PVFilter: 1\r\n") + kMessage;
  server.queue("A.MAI", kCommand, marked);
  const LoadedAgent agent(server);
  testing::internal::CaptureStdout();
  EXPECT_EQ(agent.execute("A.MAI"), 1);
  EXPECT_THAT(testing::internal::GetCapturedStdout(), Not(HasSubstr("ProcessFilter:")));
  EXPECT_EQ(server.message("A.MAI"), marked);
}

TEST(Exports, AnEmptySetReadsNothing) {
  const ServerTree server;
  server.filters({});
  server.queue("A.MAI", kCommand, kMessage);
  const LoadedAgent agent(server);
  testing::internal::CaptureStdout();
  EXPECT_EQ(agent.execute("A.MAI"), 1);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Exports, AMissingCommandFileLeavesTheEnvelopeEmpty) {
  const ServerTree server;
  prepare(server);
  server.queue("A.MAI", kCommand, kMessage);
  server.remove("queues/SMTP/Inbound/A.MAI");
  const LoadedAgent agent(server);
  agent.execute("A.MAI");
  EXPECT_THAT(server.message("A.MAI"), HasSubstr("X-Found: free from \r\n"));
}

TEST(Exports, TheOthersAnswerWithoutScanners) {
  const ServerTree server;
  prepare(server);
  const LoadedAgent agent(server);
  EXPECT_EQ(agent.find<decltype(FilterUnInit)>("FilterUnInit")(0), 1);
  EXPECT_EQ(agent.find<decltype(FilterCommand)>("FilterCommand")(0, 0, "TRAIN"), 0);
  EXPECT_THAT(report_log(server), HasSubstr("\tBayesian AutoTraining is being called, but the system could not find a "
                                            "reference to BayesianExecute.\r\n"));
  platform::initialise_com();  // as a caller must on Windows
  char text[8] = "before";
  auto* run = agent.find<decltype(ExecuteVBScript)>("ExecuteVBScript");
  EXPECT_EQ(run("Function F\nF=True\nEnd Function", "F", text, sizeof text, 0), -1);
  EXPECT_STREQ(text, "before");
  EXPECT_EQ(run("Function F\nF=True\nEnd Function", "F", text, sizeof text, 1), -1);
  EXPECT_STREQ(text, "");
  char error[64] = "before";
  EXPECT_EQ(run("Function F\nF=\nEnd Function", "F", error, sizeof error, 1), 0);
  EXPECT_THAT(error, testing::StartsWith("Script Syntax Error: HRESULT = -2"));
  platform::uninitialise_com();
  EXPECT_EQ(run(nullptr, nullptr, nullptr, 0, 1), 0);
}

TEST(Exports, StartUpPublishesTheServiceStart) {
  const ServerTree server;
  server.set_number(kRootKey, "Update Statistics", 1);
  server.set_number(kAgentKey, "Bayesian Filtering Status", 1);
  { const LoadedAgent agent(server); }
  platform::forget_settings();
  EXPECT_GT(reg_read_dword_or(kCountersKey, "Service Start", 0), 1700000000u);
  EXPECT_EQ(reg_read_dword_or(kCountersKey, "Bayesian Total Scans", 9), 0u);
  EXPECT_EQ(reg_read_dword_or(kCountersKey, "SA Total Scans", 9), 9u) << "not enabled, so not published";
}

TEST(Exports, AChangedDirectoryTakesEffectFromTheNextMessage) {
  const ServerTree server;
  prepare(server);
  server.queue("A.MAI", kCommand, kMessage);
  const LoadedAgent agent(server);
  server.make_directory("other/SMTP/Inbound/Messages");
  server.write("other/SMTP/Inbound/Messages/A.MAI", kMessage);
  server.set_text(kConnectorsKey, "Connector Root Directory", server.path("other"));
  agent.execute("A.MAI");
  EXPECT_EQ(server.message("A.MAI"), kMessage);
  EXPECT_NE(server.read("other/SMTP/Inbound/Messages/A.MAI"), kMessage);
}

}  // namespace
}  // namespace pv
