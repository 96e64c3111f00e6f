#include "actions/execute_application.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "actions/queued_message.h"
#include "common/dates.h"

namespace pv {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class ExecuteApplicationTest : public test::QueuedMessage {
 protected:
  ~ExecuteApplicationTest() { set_execute_application_limit_for_test(0); }

  bool run(std::string_view program, std::string_view arguments) {
    platform::OutputCapture output;
    const bool started = ExecuteApplication(message_, program, arguments);
    output_ = output.take();
    return started;
  }

  std::string expanded(std::string_view text) const {
    BoundedText<kExpandedCommand> output;
    EXPECT_EQ(ExpandCommandTokens(message_, text, output), 1);
    return std::string(output.view());
  }

  std::string output_;
};
using ConcurrentExecuteApplication = ExecuteApplicationTest;

TEST_F(ExecuteApplicationTest, PassesTheMessagesNameAndPrintsTheCommandFirst) {
  const std::string program = ACTION_PROGRAM;
  const std::string file = tree_.path("words");
  EXPECT_TRUE(run(program, "append \"" + file + "\" [CONNECTOR] [ID] \"a b\" [ID]"));
  EXPECT_EQ(tree_.read("words"), "SMTP\nM1.MAI\na b\nM1.MAI\n");

  EXPECT_TRUE(run(program, "print [ID]"));
  std::string output = output_;
  output.erase(std::remove(output.begin(), output.end(), '\r'), output.end());  // the program's own line end
  EXPECT_EQ(output, "Filter Event Raw Command:" + program + " print [ID]\nFilter Event Command:" + program +
                        " print M1.MAI\nM1.MAI\n");
}

TEST_F(ExecuteApplicationTest, SaysWhyNothingWasStarted) {
  EXPECT_FALSE(run("no-such-program-here", ""));
  EXPECT_EQ(output_,
            "Filter Event Raw Command:no-such-program-here \nFilter Event Command:no-such-program-here \n"
            "Pickup Event CreateProcess failed Error:2 (no-such-program-here )\n");
}

TEST_F(ExecuteApplicationTest, EndsAProgramAtItsLimit) {
  set_execute_application_limit_for_test(200);
  EXPECT_TRUE(run(ACTION_PROGRAM, "wait \"" + tree_.path("words") + "\" done")) << "it was started";
  EXPECT_FALSE(tree_.exists("words"));
}

TEST_F(ExecuteApplicationTest, ReplacesEveryToken) {
  EXPECT_EQ(expanded("[ID][ID] [CONNECTOR] [id]"), "M1.MAIM1.MAI SMTP [id]");
  const std::string before(rfc822_date_now().view());
  const std::string text = expanded("[TIME]");
  const std::string after(rfc822_date_now().view());
  EXPECT_TRUE(before <= text && text <= after) << text;
}

TEST_F(ExecuteApplicationTest, ATokenThatDoesNotFitStays) {
  const std::string filler(2046 - 6, 'x');  // "M1.MAI" fits just so
  EXPECT_EQ(expanded(filler + "[ID]"), filler + "M1.MAI");
  EXPECT_EQ(expanded(filler + "x[ID]"), filler + "x[ID]");
  const std::string longest = filler.substr(10) + "[ID][CONNECTOR]";
  EXPECT_EQ(expanded(longest.substr(9)), longest.substr(9, 2030 - 9) + "M1.MAISMTP") << "each by itself";
}

TEST_F(ConcurrentExecuteApplication, ThreadsRunProgramsSideBySide) {
  platform::OutputCapture output;
  std::vector<std::thread> threads;
  for (const char* name : {"one", "two", "three", "four"}) {
    threads.emplace_back([this, name] {
      EXPECT_TRUE(ExecuteApplication(message_, ACTION_PROGRAM, "append \"" + tree_.path(name) + "\" [ID]"));
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const char* name : {"one", "two", "three", "four"}) EXPECT_EQ(tree_.read(name), "M1.MAI\n") << name;
}

}  // namespace
}  // namespace pv
