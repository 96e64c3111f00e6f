// The actions that delete a message or copy it aside.
#include <gtest/gtest.h>

#include "actions/copy_message.h"
#include "actions/delete_message.h"
#include "actions/queued_message.h"

namespace pv {
namespace {

using MessageFiles = test::QueuedMessage;

TEST_F(MessageFiles, DeletesTheCommandFileFirst) {
  {
    const test::FailOperation failure(1);
    EXPECT_FALSE(DeleteQueuedMessage(message_, Queue::kInbound));
  }
  EXPECT_TRUE(tree_.exists(test::kCommandFile));
  EXPECT_TRUE(tree_.exists(test::kMessageFile));
  {
    const test::FailOperation failure(2);
    EXPECT_FALSE(DeleteQueuedMessage(message_, Queue::kInbound));
  }
  EXPECT_FALSE(tree_.exists(test::kCommandFile));
  EXPECT_TRUE(tree_.exists(test::kMessageFile));
}

TEST_F(MessageFiles, ActsOnTheQueueOfTheScope) {
  EXPECT_FALSE(DeleteQueuedMessage(message_, Queue::kOutgoing));
  EXPECT_FALSE(CopyToBadMail(message_, Queue::kOutgoing));
  EXPECT_TRUE(DeleteQueuedMessage(message_, Queue::kInbound));
  EXPECT_FALSE(tree_.exists(test::kCommandFile));
  EXPECT_FALSE(tree_.exists(test::kMessageFile));
}

TEST_F(MessageFiles, CopiesBothFilesAside) {
  tree_.write("quarantine/M1.MAI", "an older one");
  EXPECT_TRUE(CopyToQuarantine(message_, Queue::kInbound));
  EXPECT_EQ(tree_.read("quarantine/M1.MAI"), "Sender=x\r\n");
  EXPECT_EQ(tree_.read("quarantine/Messages/M1.MAI"), message_text());
  EXPECT_TRUE(CopyToBadMail(message_, Queue::kInbound));
  EXPECT_EQ(tree_.read("badmail/M1.MAI"), "Sender=x\r\n");
  EXPECT_EQ(tree_.read("badmail/Messages/M1.MAI"), message_text());
  EXPECT_TRUE(tree_.exists(test::kCommandFile));
}

TEST_F(MessageFiles, WithoutMessagesDirectoryTheCommandFileAloneIsCopied) {
  tree_.remove("quarantine/Messages");
  EXPECT_FALSE(CopyToQuarantine(message_, Queue::kInbound));
  EXPECT_TRUE(tree_.exists("quarantine/M1.MAI"));
}

TEST_F(MessageFiles, WithoutDirectoryNothingIsCopied) {
  message_.directories.quarantine.clear();
  message_.directories.bad_mail.clear();
  EXPECT_FALSE(CopyToQuarantine(message_, Queue::kInbound));
  EXPECT_FALSE(CopyToBadMail(message_, Queue::kInbound));
}

TEST_F(MessageFiles, AnyFailedCopyLeavesWholeFiles) {
  bool reached = true;
  int number = 1;
  for (; reached; ++number) {
    tree_.write("quarantine/M1.MAI", "old");
    tree_.write("quarantine/Messages/M1.MAI", "old");
    bool copied = false;
    {
      const test::FailOperation failure(number);
      copied = CopyToQuarantine(message_, Queue::kInbound);
      reached = failure.reached();
    }
    EXPECT_NE(copied, reached) << "operation " << number;
    const std::string command = tree_.read("quarantine/M1.MAI");
    EXPECT_TRUE(command == "old" || command == "Sender=x\r\n") << "operation " << number << ": " << command;
    EXPECT_EQ(tree_.read("quarantine/Messages/M1.MAI"), copied ? message_text() : "old") << "operation " << number;
    EXPECT_EQ(tree_.names("quarantine").size(), 2u) << "operation " << number;
    EXPECT_EQ(tree_.names("quarantine/Messages").size(), 1u) << "operation " << number;
  }
  EXPECT_GT(number, 10);
}

}  // namespace
}  // namespace pv
