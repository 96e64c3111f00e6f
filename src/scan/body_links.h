// Web links in the body, looked up in DNS blacklists.
#pragma once

#include <cstdint>
#include <string_view>

#include "filters/find_blacklisted_link.h"

namespace pv {

// Whether a link of the line is on a blacklist of the DNS look-up library, and on which. `look_ups` counts the
// message's look-ups without a finding, which are limited. While no library is loaded no link is listed.
[[nodiscard]] bool find_listed_link(std::string_view message_id, std::uint32_t& look_ups, std::string_view line,
                                    BlacklistName& list);

}  // namespace pv
