#include "plugins/posix/name_server.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

extern char** environ;

namespace pv::test {
namespace {

constexpr std::string_view kProgram = DNSMASQ;
constexpr int kMostTries = 5;  // somebody else may take the port before the server does

// Bound to a port that the system chose.
int bound_socket() {
  const int made = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (made < 0 || ::bind(made, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("no port of the loopback address can be had");
  }
  return made;
}

std::string port_of(int socket) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size);
  return std::to_string(ntohs(address.sin_port));
}

std::string free_port() {
  const int socket = bound_socket();
  std::string port = port_of(socket);
  ::close(socket);
  return port;
}

// Starts a program whose standard error goes into the pipe.
pid_t start(std::vector<std::string> arguments, int error_pipe) {
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, error_pipe, STDERR_FILENO);
  pid_t process = -1;
  if (::posix_spawn(&process, pointers[0], &actions, nullptr, pointers.data(), environ) != 0) process = -1;
  ::posix_spawn_file_actions_destroy(&actions);
  return process;
}

// Reads what the server says until it serves; false when it ended before.
bool wait_until_started(int pipe) {
  std::string said;
  std::array<char, 4096> part{};
  while (said.find("started") == std::string::npos) {
    const ssize_t size = ::read(pipe, part.data(), part.size());
    if (size <= 0) return false;
    said.append(part.data(), static_cast<std::size_t>(size));
  }
  return true;
}

std::vector<std::string> arguments(const std::vector<std::string>& records, int ttl_seconds, const std::string& port) {
  std::vector<std::string> list = {std::string(kProgram),
                                   "--no-daemon",
                                   "--conf-file=/dev/null",
                                   "--no-resolv",
                                   "--no-hosts",
                                   "--bind-interfaces",
                                   "--local=/example/",
                                   "--port=" + port,
                                   "--listen-address=127.0.0.1",
                                   "--local-ttl=" + std::to_string(ttl_seconds)};
  for (const std::string& record : records) list.push_back("--address=/" + record);
  return list;
}

}  // namespace

bool NameServer::is_available() {
  return !kProgram.empty();
}

NameServer::NameServer(const std::vector<std::string>& records, int ttl_seconds) {
  for (int tries = 0; tries < kMostTries; ++tries) {
    const std::string port = free_port();
    address_ = "127.0.0.1:" + port;
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) break;
    process_ = start(arguments(records, ttl_seconds, port), pipe[1]);
    ::close(pipe[1]);
    const bool started = process_ > 0 && wait_until_started(pipe[0]);
    ::close(pipe[0]);  // it says nothing more: queries are not logged
    if (started) return;
    stop();
  }
  throw std::runtime_error("the name server does not start");
}

void NameServer::stop() {
  if (process_ <= 0) return;
  ::kill(process_, SIGTERM);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
}

SilentServer::SilentServer() : socket_(bound_socket()) {}
SilentServer::~SilentServer() {
  ::close(socket_);
}
std::string SilentServer::address() const {
  return "127.0.0.1:" + port_of(socket_);
}

}  // namespace pv::test
