// The scanners through the exports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/filter_execute.h"
#include "agent/lifecycle.h"
#include "agent/loaded_agent.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "providers/scanner_library.h"

namespace pv {
namespace {

using test::install_scanner;
using test::LoadedAgent;
using test::report_log;
using test::ScannerLibrary;
using test::ServerTree;
using testing::HasSubstr;

constexpr char kCommand[] = "Recipients=[SMTP:jane@example.org]\r\nSender=[SMTP:ann@example.com]\r\n";
constexpr char kMessage[] = "Subject: Hello\r\n\r\nFree\r\n";

// A server whose one filter marks what the Bayesian scanner gives more than 90.
class BayesianServer : public ServerTree {
 public:
  BayesianServer() {
    set_number(kAgentKey, "Activity Log Enabled", 1);
    set_number(kRootKey, "Update Statistics", 1);
    set_number(kAgentKey, "Bayesian Filtering Status", 1);
    set_number(kAgentKey, "Bayesian Filtering Load Mode", 1);
    filters({"spam"});
    criteria("spam", {{kSpamProbability, "90"}});
    actions("spam", {{"ADD_HEADER", "X-Spam|[PV_BFV]"}});
    queue("A.MAI", kCommand, kMessage);
    install_scanner(*this, "whole", "PVFLTMBF");
  }
};

TEST(Scanners, AVerdictFiresAFilterAndIsCounted) {
  const BayesianServer server;
  const ScannerLibrary scanner(server, "PVFLTMBF");
  const LoadedAgent agent(server);
  ScannerScript script;
  script.reply = "<SP>99</SP>";
  scanner.set(script);
  for (std::uint32_t scans = 1; scans <= 3; ++scans) {
    EXPECT_EQ(agent.execute("A.MAI"), 1);
    server.queue("A.MAI", kCommand, kMessage);
  }
  agent.execute("A.MAI");
  EXPECT_EQ(server.message("A.MAI"), "Subject: Hello\r\nX-Spam: 99.000000\r\n\r\nFree\r\n");
  EXPECT_EQ(scanner.number_of_calls(), 5) << "four messages and the start";
}

TEST(Scanners, CountersAreStoredWhenTheAgentIsUnloaded) {
  const BayesianServer server;
  {
    const ScannerLibrary scanner(server, "PVFLTMBF");
    const LoadedAgent agent(server);
    for (int i = 0; i < 500; ++i) agent.execute("A.MAI");
  }
  platform::forget_settings();
  EXPECT_EQ(reg_read_dword_or(kCountersKey, "Bayesian Total Scans", 0), 500U);
}

TEST(Scanners, TheLastMessageInFlightStoresTheCounters) {
  const BayesianServer server;
  attach();
  std::uint32_t number = 0;
  do {
    publish_counter(kCountersKey, "SA Total Scans", ++number);
  } while (number < 100000 && reg_read_dword_or(kCountersKey, "SA Total Scans", 0) == number);
  filter_queued_message("none", "SMTP");
  EXPECT_EQ(reg_read_dword_or(kCountersKey, "SA Total Scans", 0), number);
  detach();
}

TEST(Scanners, AnExceptionLeavesTheMessageAsItWas) {
  if (!SCANNERS_THROW) GTEST_SKIP() << "exceptions do not leave a library of this system";
  const BayesianServer server;
  const ScannerLibrary scanner(server, "PVFLTMBF");
  {
    const LoadedAgent agent(server);
    ScannerScript script;
    script.behaviour = ScannerScript::kThrows;
    scanner.set(script);
    EXPECT_EQ(agent.execute("A.MAI"), 1);
    EXPECT_EQ(agent.find<decltype(FilterCommand)>("FilterCommand")(0, 0, "TRAIN"), 0);
  }
  EXPECT_EQ(server.message("A.MAI"), kMessage);
  for (const char* call : {"FilterExecute", "FilterCommand"}) {
    EXPECT_THAT(report_log(server), HasSubstr(std::string(call) + " handled an exception; session will be dropped.\r\n"
                                                                  "The exception was: out of order\r\n"));
  }
}

TEST(Scanners, ACommandGoesToTheBayesianScanner) {
  const BayesianServer server;
  const ScannerLibrary scanner(server, "PVFLTMBF");
  const LoadedAgent agent(server);
  ScannerScript script;
  script.result = -7;
  scanner.set(script);
  auto* command = agent.find<decltype(FilterCommand)>("FilterCommand");
  EXPECT_EQ(command(1, 2, "<COMMAND>SPAM</COMMAND>"), -7);
  EXPECT_EQ(command(1, 2, nullptr), -7);
  EXPECT_THAT(scanner.calls(), HasSubstr("execute <COMMAND>SPAM</COMMAND> 23 0\nexecute  0 0\n"));
}

}  // namespace
}  // namespace pv
