// A name server for a test, on a port of its own of the loopback address.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace pv::test {

class NameServer {
 public:
  // Knows these records, "name/address", each also for every name below it, and answers everything else below "example"
  // with "no such name". `ttl_seconds` is what it says of how long its answers hold.
  NameServer(const std::vector<std::string>& records, int ttl_seconds);
  ~NameServer() { stop(); }
  NameServer(const NameServer&) = delete;
  NameServer& operator=(const NameServer&) = delete;

  // As "Local DNS Server List" takes it: "127.0.0.1:40053".
  std::string address() const { return address_; }
  void stop();

  // Whether the program that this runs is installed.
  static bool is_available();

 private:
  pid_t process_ = -1;
  std::string address_;
};

// A server that is there and never answers.
class SilentServer {
 public:
  SilentServer();
  ~SilentServer();
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;
  std::string address() const;

 private:
  int socket_;
};

}  // namespace pv::test
