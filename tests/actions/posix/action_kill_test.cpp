// The process is killed before each file operation of each action in turn.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "actions/every_action.h"
#include "platform/file.h"

namespace pv {
namespace {

using test::ActionCase;
using test::ActionServer;
using test::Files;

int operations_left = 0;

bool kill_this_process(platform::FileOperation) {
  if (--operations_left == 0) ::raise(SIGKILL);
  return false;
}

// False when the action ran through before the operation was reached.
bool killed_at(int operation, const ActionCase& action, ActionServer& server) {
  const pid_t child = ::fork();
  if (child == 0) {
    operations_left = operation;
    platform::set_file_operation_hook_for_test(kill_this_process);
    server.run(action);
    ::_exit(0);
  }
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status) ? WTERMSIG(status) == SIGKILL : status == 0) << "status " << status;
  return WIFSIGNALED(status);
}

class ActionKill : public ::testing::TestWithParam<ActionCase> {};

TEST_P(ActionKill, LeavesTheOldFilesOrTheNewOnes) {
  const ActionCase& action = GetParam();
  ActionServer server;
  server.restore();
  const Files before = server.files();
  server.run(action);
  const Files finished = server.files();

  bool killed = true;
  for (int number = 1; killed; ++number) {
    server.restore();
    killed = killed_at(number, action, server);
    ASSERT_EQ(test::damage(before, finished, server.files(), true), "") << "killed before operation " << number;
  }
  EXPECT_EQ(server.files(), finished);
}

INSTANTIATE_TEST_SUITE_P(Actions, ActionKill, ::testing::ValuesIn(test::every_action()), [](const auto& info) {
  return std::string(info.param.mailbox_rule ? "mailbox_" : "") + std::to_string(info.index);
});

}  // namespace
}  // namespace pv
