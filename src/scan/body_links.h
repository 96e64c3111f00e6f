// Web links in the body, looked up in DNS blacklists.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/bounded_text.h"

namespace pv {

using BlacklistName = BoundedText<256>;

// Whether a link of the line is on a blacklist, and on which. `look_ups` counts the message's look-ups without a
// finding, which are limited. While no DNS library is loaded nothing is looked up and no link is listed.
[[nodiscard]] bool find_listed_link(std::string_view message_id, std::uint32_t& look_ups, std::string_view line,
                                    BlacklistName& list);

}  // namespace pv
