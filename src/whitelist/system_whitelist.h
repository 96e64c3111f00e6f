// The server's list of connecting addresses that are exempt from checks: the value names of one settings key, each an
// address pattern (whitelist/address_patterns.h).
#pragma once

#include <string_view>

namespace pv {

// Whether a pattern of the system whitelist matches the address: by the IPv6 rule when it holds a ":", else by the IPv4
// rule. A hit is reported through report_write. Names of more than 255 bytes are passed over. Any thread.
bool IsWhitelisted(std::string_view address);

}  // namespace pv
