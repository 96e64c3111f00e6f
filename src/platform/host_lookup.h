// Host names to addresses.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pv::platform {

// The host's first IPv4 address in dotted form (at most 15 characters), or nullopt when it has none or cannot be
// resolved. Blocks as long as the system's resolver does.
std::optional<std::string> first_ipv4_address(std::string_view host);

// Test hook: replaces the resolver; nullptr brings the system's back.
using HostLookup = std::optional<std::string> (*)(std::string_view host);
void set_host_lookup_for_test(HostLookup lookup);

}  // namespace pv::platform
