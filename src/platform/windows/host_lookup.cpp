#include "platform/host_lookup.h"

#include <winsock2.h>

#include <atomic>
#include <cstring>

namespace pv::platform {
namespace {

constexpr std::size_t kLongestHost = 255;  // bytes; no host name in the DNS is longer

constinit std::atomic<HostLookup> lookup_for_test = nullptr;

// Once in a process and never undone: the program may use sockets of its own after the agent is unloaded.
bool sockets_are_ready() {
  static const bool ready = [] {
    WSADATA data{};
    return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
  }();
  return ready;
}

// What the system gives belongs to the calling thread, until its next call.
std::optional<std::string> resolve(std::string_view host) {
  const bool usable = !host.empty() && host.size() <= kLongestHost && host.find('\0') == std::string_view::npos;
  if (!usable || !sockets_are_ready()) return std::nullopt;
  const hostent* const found = ::gethostbyname(std::string(host).c_str());
  in_addr address{};
  const bool has_address = found != nullptr && found->h_addrtype == AF_INET &&
                           found->h_length == static_cast<int>(sizeof address) && found->h_addr_list[0] != nullptr;
  if (!has_address) return std::nullopt;
  std::memcpy(&address, found->h_addr_list[0], sizeof address);
  const char* const text = ::inet_ntoa(address);
  return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

}  // namespace

std::optional<std::string> first_ipv4_address(std::string_view host) {
  const HostLookup replacement = lookup_for_test.load(std::memory_order_acquire);
  return replacement != nullptr ? replacement(host) : resolve(host);
}

void set_host_lookup_for_test(HostLookup lookup) {
  lookup_for_test.store(lookup, std::memory_order_release);
}

}  // namespace pv::platform
