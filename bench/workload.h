// The filters, words and messages that the benchmarks share.
#pragma once

#include <cstddef>
#include <string>

#include "queue/message_context.h"
#include "support/server_tree.h"

namespace pv::bench {

// The `count` words from number `first` on, joined by `separator`: seven letters each, which stand in no message here.
std::string words(int first, int count, char separator);

inline constexpr char kTextLine[] = "The quick brown fox jumps over the lazy dog, again and again and on.\r\n";
inline constexpr std::size_t kTextLineSize = sizeof kTextLine - 1;  // 70 bytes
inline constexpr char kHeaders[] =
    "From: Ann Example <ann@example.org>\r\nTo: Joe Example <joe@example.com>\r\nSubject: Minutes of the meeting\r\n"
    "Date: Tue, 24 Nov 2026 21:49:00 +0100\r\nMessage-ID: <1@example.org>\r\n\r\n";
inline constexpr char kCommandFile[] =
    "Recipients=[SMTP:joe@example.com];[SMTP:jane@example.com]\r\nSender=[SMTP:ann@example.org]\r\n"
    "ClientIP=192.0.2.7\r\nAccount=po\r\nAuthenticationStatus=1\r\n";

// A message whose body has at least `body_bytes` bytes of kTextLine.
std::string message_text(std::size_t body_bytes);

// A server with `filters` filters, none of which fires. Each tests the envelope (recipients, client IP, account,
// connector, authentication) and 5 words each in subject, sender and body.
class FilterServer : public test::ServerTree {
 public:
  explicit FilterServer(int filters);
};

}  // namespace pv::bench
