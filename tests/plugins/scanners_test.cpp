// The example scanners as the agent uses them: messages through FilterExecute.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "agent/loaded_agent.h"
#include "antivirus/eicar_search.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "filters/filter_set.h"
#include "platform/output_capture.h"
#include "plugins/base64_text.h"

namespace pv {
namespace {

using test::LoadedAgent;
using test::ServerTree;
using testing::HasSubstr;
using testing::Not;

// Copies a library, without the files beside it, to where the server looks for it.
void install(const ServerTree& server, const std::string& library) {
  for (const char* extension : {".so", ".dll"}) {
    const std::filesystem::path from = std::filesystem::path(PLUGIN_DIRECTORY) / (library + extension);
    if (!std::filesystem::exists(from)) continue;
    std::filesystem::create_directories(server.path("app"));
    std::filesystem::copy_file(from, std::filesystem::path(server.path("app")) / from.filename());
  }
  server.set_text(kRootKey, "Application Directory", server.path("app"));
}

// A filter that marks the messages that meet a criterion.
void mark_messages(const ServerTree& server, SlotIndex slot, const char* value) {
  server.filters({"mark"});
  server.criteria("mark", {{slot, value}});
  server.actions("mark", {{"ADD_HEADER", "X-Found|yes"}});
}

std::string filtered(const ServerTree& server, const LoadedAgent& agent, const std::string& message) {
  server.queue("A.MAI", "Sender=[SMTP:ann@example.com]\r\n", message);
  platform::OutputCapture output;
  EXPECT_EQ(agent.execute("A.MAI"), 1);
  return server.message("A.MAI");
}

std::string loading_output(const ServerTree& server) {
  platform::OutputCapture output;
  const LoadedAgent agent(server);
  return output.take();
}

TEST(ExampleBayesian, ScoresByItsWordList) {
  for (const std::uint32_t load_mode : {0U, 1U}) {
    const ServerTree server;
    install(server, "PVFLTMBF");
    server.write("app/PVFLTMBF.words", "99 casino\n90 jackpot\n");
    server.set_number(kAgentKey, "Bayesian Filtering Status", 1);
    server.set_number(kAgentKey, "Bayesian Filtering Load Mode", load_mode);
    mark_messages(server, kSpamProbability, "90");
    const LoadedAgent agent(server);
    EXPECT_THAT(filtered(server, agent, "Subject: Casino\r\n\r\nhello\r\n"), HasSubstr("X-Found")) << load_mode;
    EXPECT_THAT(filtered(server, agent, "Subject: a\r\n\r\njackpot\r\n"), Not(HasSubstr("X-Found"))) << load_mode;
    EXPECT_THAT(filtered(server, agent, ""), Not(HasSubstr("X-Found"))) << load_mode;
  }
}

TEST(ExampleBayesian, GivesNoVerdictWithoutAList) {
  const ServerTree server;
  install(server, "PVFLTMBF");
  server.set_number(kAgentKey, "Bayesian Filtering Status", 1);
  mark_messages(server, kSpamProbability, "1");
  const LoadedAgent agent(server);
  EXPECT_THAT(filtered(server, agent, "Subject: casino\r\n\r\n"), Not(HasSubstr("X-Found")));
  char command[] = "<COMMAND>TRAIN</COMMAND>";
  EXPECT_EQ(agent.find<decltype(FilterCommand)>("FilterCommand")(0, 0, command), 0) << "it cannot be trained";
}

TEST(ExampleBayesian, HasAllEntryPoints) {
  const ServerTree server;
  install(server, "PVFLTMBF");
  server.set_number(kAgentKey, "Bayesian Filtering Status", 1);
  server.set_number(kAgentKey, "Bayesian Filtering Load Mode", 1);
  EXPECT_THAT(loading_output(server), HasSubstr("Bayesian Filter - Loading Complete.\n"));
}

TEST(ExampleAntivirus, FindsTheTestFile) {
  const ServerTree server;
  install(server, "PVAVGEN");
  server.set_number(kAgentKey, "Antivirus Status", 1);
  mark_messages(server, kHasVirus, "");
  const LoadedAgent agent(server);
  const std::string virus = example::eicar_text();
  const std::string headers = "Subject: a\r\n\r\n";
  EXPECT_THAT(filtered(server, agent, headers + virus + "\r\n"), HasSubstr("X-Found"));
  EXPECT_THAT(filtered(server, agent, headers + std::string(200000, 'x') + virus), HasSubstr("X-Found"))
      << "it stands on both sides of a block of the file";
  EXPECT_THAT(filtered(server, agent, headers + "\r\n" + example::test::base64(virus, 76)), HasSubstr("X-Found"));
  EXPECT_THAT(filtered(server, agent, headers + virus.substr(1) + "\r\n"), Not(HasSubstr("X-Found")));
}

TEST(ExampleAntivirus, LooksIntoTheQueueThatItsFileNames) {
  const ServerTree server;
  install(server, "PVAVGEN");
  server.write("app/PVAVGEN.queues", server.path("elsewhere") + "\r\n");
  server.set_number(kAgentKey, "Antivirus Status", 1);
  mark_messages(server, kHasVirus, "");
  const LoadedAgent agent(server);
  EXPECT_THAT(filtered(server, agent, "Subject: a\r\n\r\n" + example::eicar_text()), Not(HasSubstr("X-Found")));
  server.write("elsewhere/SMTP/Outgoing/Messages/A.MAI", example::eicar_text());
  EXPECT_THAT(filtered(server, agent, "Subject: a\r\n\r\n"), HasSubstr("X-Found"));
}

}  // namespace
}  // namespace pv
