// The patterns of the system whitelist: IP addresses with wildcards, compared with one address.
#pragma once

#include <string_view>

namespace pv {

// Whether an IPv4 pattern matches: '*' stands for the rest of its dotted part, at the end of both texts for at least
// one character. "192.168.1.*" matches "192.168.1.5", "19*.168.1.1" matches "199.168.1.1", "192.168.*" matches no
// address of four parts. Other characters are compared as they are. An empty address matches nothing.
bool ipv4_pattern_matches(std::string_view address, std::string_view pattern);

// Whether an IPv6 pattern matches: eight groups of up to four hexadecimal digits, compared as numbers, and in the
// pattern a group "*" for any. One "::", anywhere, stands for one or more groups of value 0. A text that cannot be read
// matches nothing: also one with a second "::", an embedded IPv4 address or a zone.
bool ipv6_pattern_matches(std::string_view address, std::string_view pattern);

}  // namespace pv
