// A channel of c-ares belongs to one thread, so each call of ask() has its own.
#include "dns/resolver.h"

#include <ares.h>
#include <arpa/nameser.h>
#include <netinet/in.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <memory>

namespace example {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kMostAddresses = 16;             // of an answer; further ones are not looked at
constexpr seconds kLongestValid{3600};         // an answer is asked for again after that, whatever the server said
constexpr seconds kNotListedValid{300};        // answers without addresses carry no time of their own
constexpr std::uint32_t kLists = 0x7F000000;   // 127.0.0.0/8: how blacklists say "listed"
constexpr std::uint32_t kErrors = 0x7FFFFF00;  // 127.255.255.0/24: how they refuse a question

bool says_listed(const ares_addrttl& address) {
  const std::uint32_t number = ntohl(address.ipaddr.s_addr);
  return (number & 0xFF000000) == kLists && (number & 0xFFFFFF00) != kErrors;
}

ServerAnswer read_answer(const ares_addrttl* addresses, int count) {
  ServerAnswer answer{false, kLongestValid};
  for (int i = 0; i < count; ++i) {
    answer.listed = answer.listed || says_listed(addresses[i]);
    answer.valid_for = std::min(answer.valid_for, seconds(std::max(addresses[i].ttl, 0)));
  }
  return answer;
}

// Called by c-ares, which is C: nothing here throws.
void take_reply(void* argument, int status, int, unsigned char* reply, int reply_size) {
  auto& answer = *static_cast<std::optional<ServerAnswer>*>(argument);
  if (status == ARES_ENOTFOUND || status == ARES_ENODATA) answer = ServerAnswer{false, kNotListedValid};
  if (status != ARES_SUCCESS) return;
  std::array<ares_addrttl, kMostAddresses> addresses{};
  int count = kMostAddresses;
  if (ares_parse_a_reply(reply, reply_size, nullptr, addresses.data(), &count) != ARES_SUCCESS) return;
  answer = read_answer(addresses.data(), count);
}

using Channel = std::unique_ptr<ares_channeldata, decltype(&ares_destroy)>;

// Without a channel nothing is known.
Channel open_channel(const std::string& servers, milliseconds time_limit) {
  constexpr int kTries = 2;
  ares_options options{};
  options.flags = ARES_FLAG_NOSEARCH | ARES_FLAG_NOALIASES;
  options.timeout = static_cast<int>(std::max<std::int64_t>(time_limit.count() / kTries, 1));
  options.tries = kTries;
  ares_channel opened = nullptr;
  if (ares_init_options(&opened, &options, ARES_OPT_FLAGS | ARES_OPT_TIMEOUTMS | ARES_OPT_TRIES) != ARES_SUCCESS) {
    return {nullptr, &ares_destroy};
  }
  Channel channel(opened, &ares_destroy);
  if (!servers.empty() && ares_set_servers_ports_csv(opened, servers.c_str()) != ARES_SUCCESS) channel.reset();
  return channel;
}

// The sockets that c-ares waits for; none when every question has its answer.
std::vector<pollfd> awaited_sockets(ares_channel channel) {
  std::array<ares_socket_t, ARES_GETSOCK_MAXNUM> sockets{};
  const auto wanted = static_cast<unsigned>(ares_getsock(channel, sockets.data(), ARES_GETSOCK_MAXNUM));
  std::vector<pollfd> list;
  for (unsigned i = 0; i < ARES_GETSOCK_MAXNUM; ++i) {
    const int events =
        (ARES_GETSOCK_READABLE(wanted, i) != 0 ? POLLIN : 0) | (ARES_GETSOCK_WRITABLE(wanted, i) != 0 ? POLLOUT : 0);
    if (events != 0) list.push_back({sockets[i], static_cast<short>(events), 0});
  }
  return list;
}

// At most until `left` is over, and no longer than c-ares wants to wait before it asks again.
int wait_ms(ares_channel channel, milliseconds left) {
  timeval most{};
  most.tv_sec = left.count() / 1000;
  most.tv_usec = left.count() % 1000 * 1000;
  timeval next{};
  const timeval* const wait = ares_timeout(channel, &most, &next);
  return static_cast<int>(wait->tv_sec * 1000 + wait->tv_usec / 1000 + 1);
}

void process(ares_channel channel, const std::vector<pollfd>& sockets) {
  ares_process_fd(channel, ARES_SOCKET_BAD, ARES_SOCKET_BAD);  // what is late is asked again
  for (const pollfd& socket : sockets) {
    const bool readable = (socket.revents & (POLLIN | POLLERR | POLLHUP)) != 0;
    const bool writable = (socket.revents & POLLOUT) != 0;
    ares_process_fd(channel, readable ? socket.fd : ARES_SOCKET_BAD, writable ? socket.fd : ARES_SOCKET_BAD);
  }
}

void wait_for_answers(ares_channel channel, Clock::time_point deadline) {
  for (auto sockets = awaited_sockets(channel); !sockets.empty(); sockets = awaited_sockets(channel)) {
    const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return ares_cancel(channel);
    if (::poll(sockets.data(), sockets.size(), wait_ms(channel, left)) >= 0) process(channel, sockets);
  }
}

std::string comma_separated(std::string_view servers) {
  std::string list;
  for (const char c : servers) {
    const bool separates = c == ' ' || c == ';' || c == ',' || c == '\t';
    if (!separates) {
      list.push_back(c);
    } else if (!list.empty() && list.back() != ',') {
      list.push_back(',');
    }
  }
  if (list.ends_with(',')) list.pop_back();
  return list;
}

}  // namespace

Resolver::Resolver(std::string_view servers, milliseconds time_limit)
    : servers_(comma_separated(servers)), time_limit_(time_limit) {}

std::vector<std::optional<ServerAnswer>> Resolver::ask(const std::vector<std::string>& names) const {
  std::vector<std::optional<ServerAnswer>> answers(names.size());
  const Clock::time_point deadline = Clock::now() + time_limit_;
  const Channel channel = open_channel(servers_, time_limit_);
  if (!channel) return answers;
  for (std::size_t i = 0; i < names.size(); ++i) {
    ares_query(channel.get(), names[i].c_str(), ns_c_in, ns_t_a, &take_reply, &answers[i]);
  }
  wait_for_answers(channel.get(), deadline);
  return answers;
}

}  // namespace example
