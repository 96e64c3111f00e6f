#include "filters/find_blacklisted_link.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "common/agent_settings.h"
#include "common/fields.h"
#include "common/formats.h"
#include "common/report_log.h"
#include "common/text_search.h"
#include "filters/percent_decoding.h"
#include "platform/host_lookup.h"

namespace pv {
namespace {

constexpr std::string_view kLinkStart = "http://";
constexpr std::string_view kLinkEnds = " \t\r\n\v\f\"'<>";
constexpr std::size_t kLongestLink = 1023;      // bytes looked at after kLinkStart
constexpr std::size_t kLongestShownHost = 200;  // bytes of a host in the report line

struct Link {
  std::string_view text;  // after kLinkStart
  std::size_t end = 0;    // position in the line
};

std::optional<Link> next_link(std::string_view line, std::size_t from) {
  const std::size_t start = find_nocase(line, kLinkStart, from);
  if (start == std::string_view::npos) return std::nullopt;
  const std::size_t end = std::min(line.find_first_of(kLinkEnds, start), line.size());
  const std::size_t text = start + kLinkStart.size();
  return Link{line.substr(text, std::min(end - text, kLongestLink)), end};
}

struct LinkHost {
  BoundedText<1024> name;
  BoundedText<64> address;
};

bool take_host(std::string_view link, LinkHost& host) {
  if (!split_field(link, "/", 1, host.name)) return false;
  if (host.name.view().find('%') == std::string_view::npos) return true;
  host.name.cut(until_nul(percent_decode(host.name)));
  return true;
}

bool is_listed(LinkHost& host, BlacklistName& list, BlacklistLookUp look_up) {
  host.address.cut(platform::first_ipv4_address(host.name).value_or(""));
  char scratch[kLookUpScratch] = {};
  char list_name[BlacklistName::kCapacity] = {};
  if (look_up(host.name.c_str(), host.address.c_str(), scratch, list_name) == 0) return false;
  list.cut(until_nul({list_name, sizeof list_name}));
  return true;
}

void report_listed(std::string_view message_id, const LinkHost& host, const BlacklistName& list) {
  BoundedText<256> shown;
  shown.cut(host.name.view().substr(0, kLongestShownHost));
  if (host.name.size() > kLongestShownHost) append_bounded(shown, "...");
  report_write(format_text("Message %.*s has link to blacklisted IP. %s (%s) was found in blacklist %s\n",
                           static_cast<int>(message_id.size()), message_id.data(), shown.c_str(), host.address.c_str(),
                           list.c_str()));
}

}  // namespace

std::int32_t FindBlacklistedLink(std::string_view message_id, std::uint32_t& look_ups, std::string_view line,
                                 BlacklistName& list, BlacklistLookUp look_up) {
  for (std::optional<Link> link = next_link(line, 0); link; link = next_link(line, link->end)) {
    LinkHost host;
    if (!take_host(link->text, host)) continue;
    if (is_listed(host, list, look_up)) {
      report_listed(message_id, host, list);
      return 1;
    }
    if (look_ups++ > settings().uri_sbl_max_checks) return 0;
  }
  return 0;
}

}  // namespace pv
