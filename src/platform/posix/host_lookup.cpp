#include "platform/host_lookup.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <cstring>
#include <memory>

namespace pv::platform {
namespace {

constexpr std::size_t kLongestHost = 255;  // bytes; no host name in the DNS is longer

constinit std::atomic<HostLookup> lookup_for_test = nullptr;

std::optional<std::string> dotted(const sockaddr* address) {
  sockaddr_in internet{};
  std::memcpy(&internet, address, sizeof internet);
  std::array<char, INET_ADDRSTRLEN> text{};
  if (::inet_ntop(AF_INET, &internet.sin_addr, text.data(), text.size()) == nullptr) return std::nullopt;
  return text.data();
}

std::optional<std::string> resolve(std::string_view host) {
  const bool usable = !host.empty() && host.size() <= kLongestHost && host.find('\0') == std::string_view::npos;
  if (!usable) return std::nullopt;
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;  // each address once
  addrinfo* found = nullptr;
  if (::getaddrinfo(std::string(host).c_str(), nullptr, &hints, &found) != 0 || found == nullptr) return std::nullopt;
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owned(found, &::freeaddrinfo);
  return dotted(owned->ai_addr);
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
