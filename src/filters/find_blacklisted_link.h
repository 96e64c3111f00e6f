// The criterion URLBL: web links of the body whose host a DNS blacklist lists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/bounded_text.h"

namespace pv {

using BlacklistName = BoundedText<256>;

// Asks whether a host is listed; not 0 when it is. `address` is the host's IPv4 address, empty when it has none.
// `scratch` has kLookUpScratch bytes, empty on entry and not read afterwards; `list_name` has BlacklistName::kCapacity
// bytes for the name of the list, and need not be terminated.
using BlacklistLookUp = std::int32_t (*)(const char* host, const char* address, char* scratch, char* list_name);
inline constexpr std::size_t kLookUpScratch = 1024;  // bytes

// Looks up the hosts of the "http://" links of a body line, in order, until one is listed: then the result is 1, `list`
// holds the blacklist's name and the report log has a line about it. Else 0. `look_ups` counts the message's look-ups
// without a finding; one that finds it above "URI SBL Max Checks" is the line's last.
//
// The host is what stands before the link's first "/", a port included, percent-decoded. Each costs a host look-up and
// a blacklist look-up on this thread. What `look_up` throws passes through.
std::int32_t FindBlacklistedLink(std::string_view message_id, std::uint32_t& look_ups, std::string_view line,
                                 BlacklistName& list, BlacklistLookUp look_up);

}  // namespace pv
