#include "scan/body_links.h"

#include "providers/dns_library.h"

namespace pv {

bool find_listed_link(std::string_view message_id, std::uint32_t& look_ups, std::string_view line,
                      BlacklistName& list) {
  return FindBlacklistedLink(message_id, look_ups, line, list, &dns_has_blacklist_entry) != 0;
}

}  // namespace pv
