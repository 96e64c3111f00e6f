// How pvfilter queues a message: the envelope that a mail server would have received with it.
#pragma once

#include <string>
#include <vector>

namespace pvfilter {

struct EnvelopeOptions {
  std::string connector = "SMTP";
  std::string from = "sender@example.com";
  std::vector<std::string> to = {"recipient@example.org"};
  std::string client_ip = "198.51.100.7";
  std::string account;
  int authentication = 0;
  bool raw = false;  // keep the line ends of the file
};

}  // namespace pvfilter
