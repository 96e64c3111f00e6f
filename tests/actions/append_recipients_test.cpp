#include "actions/append_recipients.h"

#include <gtest/gtest.h>

#include <string>

#include "actions/new_message_fixture.h"

namespace pv {
namespace {

using namespace std::string_literals;

class AppendRecipientsTest : public test::NewMessages {
 protected:
  std::string inbound_command() const { return tree_.read(test::kCommandFile); }
  static std::string rewritten(std::string_view recipients) {
    return "Recipients=" + std::string(recipients) +
           "\r\nServer=mx\r\nSender=[SMTP:ann@example.com]\r\nTimeAcquired=42\r\nStatus=\r\n";
  }
};

TEST_F(AppendRecipientsTest, BracketsAndJoinsAddresses) {
  const struct {
    const char* what;
    std::string before;
    std::string address;
    const char* after;
  } cases[] = {
      {"the first", "", "a@b", "[SMTP:a@b]"},
      {"a further one", "[SMTP:x]", "a@b", "[SMTP:x];[SMTP:a@b]"},
      {"bracketed already", "[SMTP:x]", "[SF:a];[SMTP:b]", "[SMTP:x];[SF:a];[SMTP:b]"},
      {"a bracket anywhere", "", "a[b", "a[b"},
      {"empty", "", "", "[SMTP:]"},
      {"line ends at the end are dropped", "", "a@b\r\n", "[SMTP:a@b]"},
      {"line ends and NUL inside are blanks", "", "a\nSender=b\0c"s, "[SMTP:a Sender=b c]"},
  };
  for (const auto& c : cases) {
    MessageContext message;
    message.envelope.recipients = c.before;
    EXPECT_TRUE(AppendRecipient(message, c.address)) << c.what;
    EXPECT_EQ(message.envelope.recipients, c.after) << c.what;
  }
}

TEST_F(AppendRecipientsTest, TakesThemFromTheFiltersDisplayName) {
  set_.filter(1).display_name.cut("audit@example.org\n");
  ASSERT_TRUE(run("APPEND_RECIPIENTS", "not-used@example.org"));
  constexpr char kThree[] = "[SMTP:jane@example.org];[SMTP:joe@example.org];[SMTP:audit@example.org]";
  EXPECT_EQ(message_.envelope.recipients, kThree);
  EXPECT_EQ(inbound_command(), rewritten(kThree));
  EXPECT_EQ(message_text(), "Subject: hello\r\n\r\nbody\r\n");
  EXPECT_EQ(tree_.names(test::kNewMessages).size(), 1u);
}

TEST_F(AppendRecipientsTest, APostofficeWritesTheInboundCommandFileToo) {
  use_postoffice("Main", "");
  tree_.remove(test::kCommandFile);
  ASSERT_TRUE(run("APPEND_RECIPIENTS", ""));
  EXPECT_EQ(inbound_command(), rewritten("[SMTP:jane@example.org];[SMTP:joe@example.org];[SMTP:Virus]"));
}

TEST_F(AppendRecipientsTest, ADeletedMessageStaysDeleted) {
  tree_.remove(test::kCommandFile);
  EXPECT_FALSE(run("APPEND_RECIPIENTS", ""));
  EXPECT_FALSE(tree_.exists(test::kCommandFile));
}

TEST_F(AppendRecipientsTest, AFailureLeavesTheMessageItsOldRecipients) {
  const std::string old_recipients = message_.envelope.recipients;
  const test::FailOperation failure(1);
  EXPECT_FALSE(AppendRecipients(message_, "a@b", Queue::kInbound));
  EXPECT_EQ(message_.envelope.recipients, old_recipients);
}

}  // namespace
}  // namespace pv
