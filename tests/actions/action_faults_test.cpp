// Each file operation of each action fails in turn.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "actions/every_action.h"
#include "actions/mailbox_rules.h"
#include "actions/queued_message.h"
#include "actions/system_actions.h"

namespace pv {
namespace {

using platform::FileFailure;
using test::ActionCase;
using test::ActionServer;
using test::Files;

constexpr std::pair<FileFailure, const char*> kFailures[] = {
    {FileFailure::kNoSpace, "no space"},
    {FileFailure::kInputOutput, "input/output error"},
    {FileFailure::kNoPermission, "no permission"},
    {FileFailure::kTooManyFiles, "too many open files"},
};

class ActionFaults : public ::testing::TestWithParam<ActionCase> {};

// The files after the action was carried out: with its data, and with what it falls back on.
std::vector<Files> finished_files(ActionServer& server, const ActionCase& action) {
  std::vector<Files> all;
  server.restore();
  EXPECT_TRUE(server.run(action).done || action.always_recorded);
  all.push_back(server.files());
  if (!action.fallback) return all;
  ActionCase fallback = action;
  fallback.data = *action.fallback;
  server.restore();
  server.run(fallback);
  all.push_back(server.files());
  return all;
}

TEST_P(ActionFaults, LeaveTheOldFilesOrTheNewOnes) {
  const ActionCase& action = GetParam();
  ActionServer server;
  server.restore();
  const Files before = server.files();
  const std::vector<Files> finished = finished_files(server, action);

  for (const auto& [failure, failure_name] : kFailures) {
    bool reached = true;
    for (int number = ActionServer::kTableOperations + 1; reached; ++number) {
      SCOPED_TRACE("operation " + std::to_string(number) + ": " + failure_name);
      server.restore();
      ActionServer::Outcome outcome;
      {
        const test::FailOperation fault(number, failure);
        outcome = server.run(action);
        reached = fault.reached();
      }
      const Files now = server.files();
      // One of the finished states, the nearer one.
      const bool fell_back = !test::damage(before, finished.front(), now, false).empty();
      const Files& wanted = fell_back ? finished.back() : finished.front();
      ASSERT_EQ(test::damage(before, wanted, now, false), "");
      if (outcome.done && !action.always_recorded) {
        ASSERT_TRUE(test::is_finished(action, wanted, now)) << "recorded";
      } else if (!action.ends_table) {
        ASSERT_TRUE(outcome.next_ran);
      }
      if (!reached) {
        ASSERT_EQ(now, finished.front());
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Actions, ActionFaults, ::testing::ValuesIn(test::every_action()), [](const auto& info) {
  std::string name = (info.param.mailbox_rule ? "mailbox_" : "") + info.param.keyword + std::to_string(info.index);
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

TEST(ActionFaultTable, HoldsEveryKeyword) {
  std::vector<std::string> tested[2];
  for (const ActionCase& action : test::every_action()) tested[action.mailbox_rule].push_back(action.keyword);
  for (const std::string_view keyword : system_action_keywords()) EXPECT_THAT(tested[0], ::testing::Contains(keyword));
  for (const std::string_view keyword : mailbox_rule_keywords()) EXPECT_THAT(tested[1], ::testing::Contains(keyword));
}

}  // namespace
}  // namespace pv
