#include "platform/process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "platform/named_mutex_fixture.h"
#include "platform/output_capture.h"
#include "platform/process_fixture.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::OutputCapture;
using platform::ProgramRun;
using platform::run_program;
using std::chrono::milliseconds;
using test::helper;
using test::kLong;

struct ArgumentCase {
  const char* what;
  std::string arguments;
  const char* printed;
};

const ArgumentCase kArguments[] = {
    {"none, after a blank", " ", "\n"},
    {"two words", "A.MAI  SMTP", "[A.MAI][SMTP]\n"},
    {"blanks between quotes", R"("a b" c)", "[a b][c]\n"},
    {"a quote that is text", R"(\"a \\\"b)",
     R"(["a][\"b])"
     "\n"},
    {"an empty word", R"("" a)", "[][a]\n"},
    {"what a shell would replace", "$HOME *.tab `id` ;ls >x", "[$HOME][*.tab][`id`][;ls][>x]\n"},
    {"a NUL", std::string("a\0b", 3), "[a]\n"},
};

TEST(Process, GivesTheProgramItsArgumentsAndOurOutput) {
  for (const ArgumentCase& c : kArguments) {
    OutputCapture output;
    const ProgramRun run = run_program(helper() + " print " + c.arguments, kLong);
    std::string printed = output.take();
    std::erase(printed, '\r');
    EXPECT_EQ(printed, c.printed) << c.what;
    EXPECT_TRUE(run.started && !run.timed_out && run.error_code == 0) << c.what;
  }
}

TEST(Process, SaysThatThereIsNoSuchProgram) {
  for (const char* line : {"no-such-program-anywhere A", "no-such-directory/program", "\"no such program\""}) {
    const ProgramRun run = run_program(line, kLong);
    EXPECT_TRUE(!run.started && !run.timed_out) << line;
    EXPECT_EQ(run.error_code, 2) << line;
  }
  EXPECT_FALSE(run_program("", kLong).started);
}

class ProcessLimit : public test::NamedMutexTest {};

// The mutex is held by a program that ours started. How long both take to start is not known, so the limit grows until
// they have.
TEST_F(ProcessLimit, EndsTheProgramWithWhatItStarted) {
  const test::TemporaryDirectory directory;
  const std::string line = helper() + " hold-by " + name_ + " " + directory.path("held");
  ProgramRun run;
  for (milliseconds limit(100); !directory.exists("held") && limit < kLong; limit *= 2) run = run_program(line, limit);
  EXPECT_TRUE(directory.exists("held"));
  EXPECT_TRUE(run.started && run.timed_out);
  platform::NamedMutex mutex(name_);
  EXPECT_TRUE(test::locked_by_another_thread(mutex, kLong));
}

TEST(ProcessConcurrent, AnyNumberOfThreads) {
  constexpr int kThreads = 8;
  constexpr int kRuns = 5;
  OutputCapture output;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([] {
      for (int n = 0; n < kRuns; ++n) {
        const ProgramRun run = run_program(helper() + " print A", kLong);
        EXPECT_TRUE(run.started && !run.timed_out);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const std::string printed = output.take();
  EXPECT_EQ(std::count(printed.begin(), printed.end(), 'A'), kThreads * kRuns);
}

}  // namespace
}  // namespace pv
