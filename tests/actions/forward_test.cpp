#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "actions/forward_to_address.h"
#include "actions/new_message_fixture.h"

namespace pv {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;

using Forward = test::NewMessages;

TEST_F(Forward, QueuesAMarkedCopy) {
  const std::string scanned_in_pieces = "A: " + std::string(2044, 'x') + "\r\nB: c\r\n\r\nbody";
  const std::string added_in_pieces = "A: " + std::string(4092, 'x') + "\r\nB: c\r\n\r\nbody";
  const struct {
    const char* what;
    std::string message;
    std::string copy;
  } cases[] = {
      {"marked", "To: b\nSubject: c\0\r\n\r\nbo\0dy\n\r"s, "To: b\nSubject: c\0\r\nX-PVFilter: 1\r\n\r\nbo\0dy\n\r"s},
      {"marked already", "x-pvfilter: 1\r\nA: b\r\n\r\n", "X-PVFilter: 1\r\nA: b\r\n\r\n"},
      {"empty", "", "X-PVFilter: 1\r\n\r\n"},
      {"a long line would hide the mark from the scan", scanned_in_pieces, "X-PVFilter: 1\r\n" + scanned_in_pieces},
      {"a long line would take the mark in", added_in_pieces, "X-PVFilter: 1\r\n" + added_in_pieces},
      {"the mark would join the last line", "A: b", "X-PVFilter: 1\r\nA: b"},
  };
  for (const auto& c : cases) {
    queue(c.message);
    ASSERT_TRUE(run("FORWARD_TO_ADDRESS", "audit@example.org")) << c.what;
    EXPECT_EQ(text(), c.copy) << c.what;
    EXPECT_EQ(command(), command_for("[SMTP:audit@example.org]")) << c.what;
    EXPECT_EQ(message_text(), c.message) << c.what;
    EXPECT_EQ(printed_, "") << c.what;
    EXPECT_TRUE(id_.size() == 36 && id_.ends_with(".MAI")) << id_;
    remove_new_message();
  }
}

TEST_F(Forward, HasASenderOfItsOwn) {
  tree_.set_text(test::kAgentSettings, "Forward Sender Address", "forward@example.org");
  ASSERT_TRUE(run("FORWARD_TO_ADDRESS", "[SF:audit]"));
  EXPECT_EQ(command(), command_for("[SF:audit]", "forward@example.org"));
}

TEST_F(Forward, APostofficeForwardsTheOutgoingMessageAndNamesItself) {
  use_postoffice("Main", "A: b\r\n\r\n");
  ASSERT_TRUE(run("FORWARD_TO_ADDRESS", "a@b"));
  EXPECT_EQ(text(), "A: b\r\nX-PVFilter: 1\r\nX-PV-POFilter: Main\r\n\r\n");
  remove_new_message();

  ASSERT_TRUE(ForwardToAddress(message_, "a@b", "Main", "jane"));
  const std::vector<std::string> names = tree_.names(test::kNewMessages);
  id_ = names[0] == "M1.MAI" ? names[1] : names[0];
  EXPECT_EQ(text(), "A: b\r\nX-PVFilter: 1\r\n\r\n") << "a mailbox's filter";
}

TEST_F(Forward, WithoutMessageNothingIsQueued) {
  tree_.remove(test::kMessageFile);
  EXPECT_FALSE(run("FORWARD_TO_ADDRESS", "a@b"));
  EXPECT_THAT(tree_.names(test::kNewMessages), ElementsAre());
  EXPECT_THAT(tree_.names(test::kInbound), ElementsAre("M1.MAI", "Messages"));
}

}  // namespace
}  // namespace pv
