// The actions that rewrite the message file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "actions/add_header.h"
#include "actions/queued_message.h"
#include "actions/subject_prefix.h"
#include "platform/system_error.h"

namespace pv {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;

using AddHeaderTest = test::QueuedMessage;
using SubjectPrefixTest = test::QueuedMessage;

struct RewriteCase {
  const char* what;
  std::string before;
  std::string after;
};

TEST_F(AddHeaderTest, AddsOrReplacesTheHeaderAndNothingElse) {
  const std::string x(5000, 'x');
  const std::string big = "a\0b\n\r\rX-A: old\r\n"s + std::string(600000, 'z');
  const RewriteCase cases[] = {
      {"added before the empty line", "B: c\r\n\r\nX-A: old\r\n", "B: c\r\nX-A: new\r\n\r\nX-A: old\r\n"},
      {"a body of any bytes is kept", "B: c\r\n\r\n" + big, "B: c\r\nX-A: new\r\n\r\n" + big},
      {"replaced, in any case", "x-a: old\r\nB: c\r\n\r\nbody", "X-A: new\r\nB: c\r\n\r\nbody"},
      {"every one is replaced", "X-A: 1\r\nX-A: 2\r\n\r\n", "X-A: new\r\nX-A: new\r\n\r\n"},
      {"folded lines stay", "X-A: 1\r\n 2\r\n\r\n", "X-A: new\r\n 2\r\n\r\n"},
      {"another name that begins alike", "X-AB: 1\r\nX-A:1\r\n\r\n", "X-AB: 1\r\nX-A:1\r\nX-A: new\r\n\r\n"},
      {"bare line feeds are kept", "B: c\nX-A: 1\n\nbody\n", "B: c\nX-A: new\r\n\nbody\n"},
      {"NUL in a header", "B: \0c\r\nX-A: 1\r\n\r\n"s, "B: \0c\r\nX-A: new\r\n\r\n"s},
      {"text behind a stray CR is kept", "B: c\r\n\rtext\r\n", "B: c\r\nX-A: new\r\n\r\ntext\r\n"},
      {"no header at all", "\r\nbody", "X-A: new\r\n\r\nbody"},
      {"an empty file", "", "X-A: new\r\n\r\n"},
      {"no empty line", "B: c\r\n", "B: c\r\nX-A: new\r\n\r\n"},
      {"the end is where the file ends", "B: c", "B: cX-A: new\r\n\r\n"},
      {"found without empty line", "X-A: 1", "X-A: new\r\n"},
      {"a piece of a long line is a line: the name", "B: " + x.substr(0, 4092) + "X-A: 1\r\n\r\n",
       "B: " + x.substr(0, 4092) + "X-A: new\r\n\r\n"},
      {"one byte less, and the line end goes with it", "B: " + x.substr(0, 4090) + "\r\nX-A: 1\r\n\r\n",
       "B: " + x.substr(0, 4090) + "\r\nX-A: new\r\n\r\n"},
      {"a piece of a long line is a line: the end", "B: " + x.substr(0, 4092) + "\r\nX-A: 1\r\n\r\n",
       "B: " + x.substr(0, 4092) + "X-A: new\r\n\r\nX-A: 1\r\n\r\n"},
  };
  for (const RewriteCase& c : cases) {
    queue(c.before);
    EXPECT_TRUE(AddHeader(message_, "X-A", "new", Queue::kInbound)) << c.what;
    EXPECT_EQ(message_text(), c.after) << c.what;
  }
}

TEST_F(AddHeaderTest, AValueStaysOnItsLine) {
  EXPECT_TRUE(AddHeader(message_, "X\rA", "a\r\nBcc: b\0c"s, Queue::kInbound));
  EXPECT_EQ(message_text(), "Subject: hello\r\nX A: a  Bcc: b c\r\n\r\nbody\r\n");
}

TEST_F(AddHeaderTest, RefusesAnEmptyNameAndAMissingMessage) {
  EXPECT_FALSE(AddHeader(message_, "", "v", Queue::kInbound));
  EXPECT_EQ(message_text(), "Subject: hello\r\n\r\nbody\r\n");
  EXPECT_FALSE(AddHeader(message_, "X-A", "v", Queue::kOutgoing));
  EXPECT_THAT(tree_.names("queues/SMTP/Outgoing/Messages"), ElementsAre());
}

TEST_F(AddHeaderTest, AnyFailedOperationLeavesTheOldMessage) {
  const std::string body(300000, 'z');
  const std::string before = "B: c\r\n\r\n" + body;
  const std::string after = "B: c\r\nX-A: new\r\n\r\n" + body;
  bool reached = true;
  int number = 1;
  for (; reached; ++number) {
    queue(before);
    bool added = false;
    {
      const test::FailOperation failure(number);
      added = AddHeader(message_, "X-A", "new", Queue::kInbound);
      reached = failure.reached();
    }
    EXPECT_EQ(message_text(), added ? after : before) << "operation " << number;
    EXPECT_NE(added, reached) << "operation " << number;
    EXPECT_THAT(tree_.names("queues/SMTP/Inbound/Messages"), ElementsAre("M1.MAI")) << "operation " << number;
  }
  EXPECT_GT(number, 6);
}

TEST_F(SubjectPrefixTest, IsPutBeforeTheSubjectOnce) {
  const RewriteCase cases[] = {
      {"the bytes around it are kept", "A: \0b\r\nsubject: hello\r\n\r\na\nb\0"s,
       "A: \0b\r\nsubject: [SPAM] hello\r\n\r\na\nb\0"s},
      {"blanks and tabs come first", "Subject:\t hello\r\n\r\n", "Subject:\t [SPAM] hello\r\n\r\n"},
      {"an empty subject", "Subject:\r\n\r\n", "Subject:[SPAM] \r\n\r\n"},
      {"not inside another header", "X-Subject: a\r\nSubject: b\r\n\r\n", "X-Subject: a\r\nSubject: [SPAM] b\r\n\r\n"},
      {"only the first subject", "Subject: a\r\nSubject: b\r\n\r\n", "Subject: [SPAM] a\r\nSubject: b\r\n\r\n"},
      {"a prefix elsewhere is none", "Subject: a\r\nB: [SPAM] \r\n\r\n[SPAM] \r\n",
       "Subject: [SPAM] a\r\nB: [SPAM] \r\n\r\n[SPAM] \r\n"},
      {"already there, in any case", "Subject: Re: [spam] a\r\n\r\n", "Subject: Re: [spam] a\r\n\r\n"},
      {"a subject behind a bare empty line", "A: b\n\r\nSubject: c\r\n\r\n", "A: b\n\r\nSubject: c\r\n\r\n"},
      {"a subject in the body", "A: b\r\n\r\nSubject: c\r\n\r\n", "A: b\r\n\r\nSubject: c\r\n\r\n"},
      {"a header block without end", "Subject: a\r\n", "Subject: a\r\n"},
      {"an empty file", "", ""},
  };
  for (const RewriteCase& c : cases) {
    queue(c.before);
    EXPECT_TRUE(AddSubjectPrefix(message_, "[SPAM] ", Queue::kInbound)) << c.what;
    EXPECT_EQ(message_text(), c.after) << c.what;
  }
}

TEST_F(SubjectPrefixTest, LineEndsInItBecomeBlanks) {
  AddSubjectPrefix(message_, "a\r\nBcc: b ", Queue::kInbound);
  EXPECT_EQ(message_text(), "Subject: a  Bcc: b hello\r\n\r\nbody\r\n");
}

TEST_F(SubjectPrefixTest, AMessageThatCannotBeOpenedIsReported) {
  int error = 0;
  platform::OutputCapture capture;
  {
    const test::FailOperation failure(1);
    EXPECT_TRUE(AddSubjectPrefix(message_, "p", Queue::kInbound));
    error = platform::last_system_error();
  }
  EXPECT_NE(error, 0);
  EXPECT_EQ(capture.take(),
            "Failed to open " + tree_.path(test::kMessageFile) + " error " + std::to_string(error) + "\n");
}

TEST_F(SubjectPrefixTest, AnyFailedOperationLeavesAWholeMessage) {
  platform::OutputCapture capture;
  bool reached = true;
  int number = 1;
  for (; reached; ++number) {
    queue("Subject: hello\r\n\r\nbody\r\n");
    const test::FailOperation failure(number);
    AddSubjectPrefix(message_, "p ", Queue::kInbound);
    reached = failure.reached();
    EXPECT_EQ(message_text(), reached ? "Subject: hello\r\n\r\nbody\r\n" : "Subject: p hello\r\n\r\nbody\r\n")
        << "operation " << number;
    EXPECT_THAT(tree_.names("queues/SMTP/Inbound/Messages"), ElementsAre("M1.MAI")) << "operation " << number;
  }
  EXPECT_GT(number, 6);
}

}  // namespace
}  // namespace pv
