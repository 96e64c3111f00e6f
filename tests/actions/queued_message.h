// A queued message and its filters for the tests of actions.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "actions/dispatcher.h"
#include "filters/criteria_keywords.h"
#include "platform/file.h"
#include "platform/output_capture.h"
#include "support/server_tree.h"

namespace pv::test {

inline constexpr char kMessageFile[] = "queues/SMTP/Inbound/Messages/M1.MAI";
inline constexpr char kCommandFile[] = "queues/SMTP/Inbound/M1.MAI";

class QueuedMessage : public ::testing::Test {
 protected:
  QueuedMessage() {
    message_.connector.cut("SMTP");
    message_.message_id.cut("M1.MAI");
    message_.directories.connector_root.cut(tree_.path("queues"));
    message_.directories.configuration.cut(tree_.path("conf"));
    message_.directories.bad_mail.cut(tree_.path("badmail"));
    message_.directories.quarantine.cut(tree_.path("quarantine"));
    message_.envelope.sender.cut("[SMTP:ann@example.com]");
    message_.envelope.client_ip.cut("10.0.0.1");
    message_.envelope.subject.cut("hello");
    queue("Subject: hello\r\n\r\nbody\r\n");
  }

  void queue(std::string_view bytes) { tree_.queue("M1.MAI", "Sender=x\r\n", bytes); }
  std::string message_text() const { return tree_.message("M1.MAI"); }

  ServerTree tree_;
  MessageContext message_;
};

// Makes the n-th file operation from its construction on fail, until it is destroyed.
class FailOperation {
 public:
  explicit FailOperation(int number, platform::FileFailure failure = platform::FileFailure::kNoSpace) {
    left_ = number;
    platform::set_file_operation_hook_for_test([](platform::FileOperation) { return --left_ == 0; }, failure);
  }
  ~FailOperation() { platform::set_file_operation_hook_for_test(nullptr); }
  FailOperation(const FailOperation&) = delete;
  FailOperation& operator=(const FailOperation&) = delete;

  bool reached() const { return left_ <= 0; }

 private:
  static inline int left_ = 0;
};

}  // namespace pv::test
