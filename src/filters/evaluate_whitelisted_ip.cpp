#include "filters/evaluation.h"
#include "filters/list_criteria.h"
#include "whitelist/outbound_whitelist.h"
#include "whitelist/system_whitelist.h"

namespace pv {
namespace {

// Who connected, and whether a check of this call has found the address. A hit stays for all words that follow, those
// of later filters included.
struct Connection {
  std::string_view client_ip;
  std::string_view account;
  std::string_view mailbox;
  bool hit = false;
};

// The system whitelist is asked even after a hit, because it reports each of its own.
void ask_system_list(Connection& connection) {
  if (IsWhitelisted(connection.client_ip)) connection.hit = true;
}

void ask_outbound_list(Connection& connection, std::string_view postoffice, std::string_view mailbox) {
  if (!connection.hit) connection.hit = IsOutboundWhiteListed(connection.client_ip, postoffice, mailbox);
}

void ask_lists(std::string_view word, Connection& connection) {
  const char scope = word.empty() ? '\0' : word.front();
  if (scope != '1' && scope != '2') return;
  ask_system_list(connection);
  if (scope == '1') ask_outbound_list(connection, {}, {});
  if (scope == '2' || !connection.account.empty()) {
    ask_outbound_list(connection, connection.account, connection.mailbox);
  }
}

void test_words(const ListEntry& entry, Connection& connection) {
  Words words(entry.value);
  while (const std::optional<std::string_view> word = words.next()) {
    ask_lists(*word, connection);
    if (!connection.hit) continue;
    ++entry.match.match_count[static_cast<std::size_t>(entry.slot)];
    entry.match.set_matched_text(entry.slot, {});
    entry.match.set_match_value(entry.slot, entry.entry, "1");
  }
}

}  // namespace

void EvaluateWhitelistedIp(SlotIndex slot, std::string_view account, std::string_view mailbox,
                           std::string_view client_ip, const FilterSet& set, MatchResults& results) {
  if (client_ip.empty()) return;
  Connection connection{client_ip, account, mailbox};
  for_each_entry(slot, kAddressValue, set, results, [&](const ListEntry& entry) { test_words(entry, connection); });
}

}  // namespace pv
