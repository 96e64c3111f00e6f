#include "queue/envelope_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/file.h"
#include "queue/queue_paths.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;

constexpr char kId[] = "0123456789ABCDEF.MAI";
constexpr char kCommandFile[] = "SMTP/Inbound/0123456789ABCDEF.MAI";

class EnvelopeFile : public testing::Test {
 protected:
  EnvelopeFile() {
    queues_.make_directory("SMTP/Inbound/Messages");
    context_.directories.connector_root.cut(queues_.path());
    context_.connector.cut("SMTP");
    context_.message_id.cut(kId);
  }

  const Envelope& read(std::string_view command_file) {
    queues_.write(kCommandFile, command_file);
    read_inbound_envelope(context_);
    return context_.envelope;
  }

  // Every field of the envelope.
  std::string summary() const {
    const Envelope& e = context_.envelope;
    std::string text = e.recipients;
    for (const std::string_view field : {e.sender.view(), e.server.view(), e.client_ip.view(), e.account.view(),
                                         e.user.view(), e.status.view(), e.command_type.view(), e.subject.view()}) {
      text.append("|").append(field);
    }
    for (const int number : {e.time_acquired, e.authentication_status, e.authentication_status_check}) {
      text.append("|").append(std::to_string(number));
    }
    return text;
  }

  test::TemporaryDirectory queues_;
  MessageContext context_;
};

constexpr char kEveryKey[] =
    "Recipients=[SMTP:a@b];[SMTP:c@d]\r\nSender=[SMTP:e@f]\r\nServer=mx\r\nClientIP=192.0.2.7\r\nAccount=office\r\n"
    "User=ann\r\nStatus=READY\r\nCommandType=SEND\r\nSubject= a subject \r\nTimeAcquired=1700000000\r\n"
    "AuthenticationStatus=2\r\n";

TEST_F(EnvelopeFile, PathsNameBothQueuesAndTheTemporaryFiles) {
  EXPECT_EQ(command_file_path(context_, Queue::kInbound), queues_.path("SMTP/Inbound/"s + kId));
  EXPECT_EQ(command_file_path(context_, Queue::kOutgoing), queues_.path("SMTP/Outgoing/"s + kId));
  EXPECT_EQ(message_file_path(context_, Queue::kOutgoing), queues_.path("SMTP/Outgoing/Messages/"s + kId));
  EXPECT_EQ(temporary_message_file_path(context_, Queue::kInbound), queues_.path("SMTP/Inbound/Messages/_"s + kId));
  EXPECT_EQ(temporary_command_file_path(context_, Queue::kInbound),
            queues_.path("SMTP/Inbound/Messages/_"s + kId + ".cmd"));
}

TEST_F(EnvelopeFile, EveryKeyFillsItsField) {
  read(kEveryKey);
  EXPECT_EQ(summary(),
            "[SMTP:a@b];[SMTP:c@d]|[SMTP:e@f]|mx|192.0.2.7|office|ann|READY|SEND| a subject |1700000000|2|2");
}

TEST_F(EnvelopeFile, LinesAreTakenAsTheyStand) {
  const std::string filler(25000 - 1, 'x');  // one piece of a line
  const struct {
    const char* what;
    std::string command_file;
    std::string sender;
  } cases[] = {
      {"a key in lower case", "sender=a\n", ""},
      {"a blank before the key", " Sender=a\n", ""},
      {"the last line of a key counts", "Sender=a\nSender=b\n", "b"},
      {"a last line without a line feed loses a byte", "Sender=abc", "ab"},
      {"a line ends at its NUL and loses a byte", "\0Sender=x\nSender=abc\0def\nServer=x\n"s, "ab"},
      {"511 bytes fit", "Sender=" + std::string(511, 'a') + "\n", std::string(511, 'a')},
      {"600 bytes are cut", "Sender=" + std::string(600, 'a') + "\n", std::string(511, 'a')},
      {"a piece of a long line is a line", filler + "Sender=a\n", "a"},
      {"a byte before the end of a piece", filler.substr(1) + "Sender=a\n", ""},
      {"a line of a megabyte", std::string(1 << 20, 'S') + "\nSender=a\n", "a"},
      {"UTF-16", "\xFF\xFES\0e\0n\0d\0e\0r\0=\0a\0\n\0"s, ""},
  };
  for (const auto& c : cases) EXPECT_EQ(read(c.command_file).sender.view(), c.sender) << c.what;
  read("Recipients=" + std::string(30000, 'r') + "\n");
  EXPECT_EQ(context_.envelope.recipients, std::string(24999 - 11 - 1, 'r')) << "each piece loses a byte";
}

TEST_F(EnvelopeFile, TheKeyOfTheAuthenticationStatusEndsInThatOfTheStatus) {
  read("Status=s\nAuthenticationStatus=1\nTimeAcquired= -12x\n");
  EXPECT_EQ(summary(), "||||||s|||-12|1|1");
}

TEST_F(EnvelopeFile, WhatCannotBeReadLeavesItEmpty) {
  read(kEveryKey);
  queues_.remove(kCommandFile);
  queues_.make_directory(kCommandFile);
  read_inbound_envelope(context_);
  EXPECT_EQ(summary(), "|||||||||0|0|0");
}

TEST_F(EnvelopeFile, AWrittenOneHoldsFiveKeys) {
  read(kEveryKey);
  ASSERT_TRUE(write_inbound_envelope(context_));
  EXPECT_EQ(queues_.read(kCommandFile),
            "Recipients=[SMTP:a@b];[SMTP:c@d]\r\nServer=mx\r\nSender=[SMTP:e@f]\r\nTimeAcquired=1700000000\r\n"
            "Status=READY\r\n");
  EXPECT_THAT(queues_.names("SMTP/Inbound/Messages"), ElementsAre()) << "no temporary file is left";
}

TEST_F(EnvelopeFile, AValueCannotMakeALineOfItsOwn) {
  context_.envelope.recipients = "a\nSender=forged";
  context_.envelope.sender.cut("b\rServer=forged");
  context_.envelope.server.cut("c\0d"s);
  ASSERT_TRUE(write_inbound_envelope(context_));
  EXPECT_EQ(queues_.read(kCommandFile), "Recipients=a\r\nServer=c\r\nSender=b\r\nTimeAcquired=0\r\nStatus=\r\n");
}

constinit int operations_left = 0;

TEST_F(EnvelopeFile, AFailureLeavesTheOldOne) {
  context_.envelope.status.cut("NEW");
  int n = 0;
  for (bool written = false; !written && n < 100; ++n) {
    queues_.write(kCommandFile, "old");
    operations_left = n;
    platform::set_file_operation_hook_for_test([](platform::FileOperation) { return operations_left-- == 0; });
    written = write_inbound_envelope(context_);
    platform::set_file_operation_hook_for_test(nullptr);
    EXPECT_EQ(queues_.read(kCommandFile) == "old", !written) << "operation " << n;
    EXPECT_THAT(queues_.names("SMTP/Inbound"), ElementsAre(kId, "Messages")) << "operation " << n;
  }
  EXPECT_GT(n, 3) << "opening, writing and renaming can each fail";
  EXPECT_LT(n, 100) << "it is never written";
}

}  // namespace
}  // namespace pv
