#include "whitelist/address_patterns.h"

#include <gtest/gtest.h>

namespace pv {
namespace {

struct PatternCase {
  const char* what;
  const char* address;
  const char* pattern;
  bool matches;
};

constexpr PatternCase kIpv4[] = {
    {"the same", "192.168.1.5", "192.168.1.5", true},
    {"the rest of the first part", "199.168.1.1", "19*.168.1.1", true},
    {"the rest of a part may be nothing before a dot", "19.168.1.1", "19*.168.1.1", true},
    {"what follows the wildcard in its part is passed over", "192.168.1.1", "1*7.168.1.1", true},
    {"the address has parts left", "192.168.1.5", "192.168.*", false},
    {"the pattern has parts left", "10.1", "*.*.*.*", false},
    {"an empty address", "", "*", false},
};

constexpr PatternCase kIpv6[] = {
    {"the same", "1:2:3:4:5:6:7:8", "1:2:3:4:5:6:7:8", true},
    {"numbers, not digits", "2001:0DB8::a", "2001:db8:0:0::000A", true},
    {"a run alone", "0:0:0:0:0:0:0:0", "::", true},
    {"a run of no group", "1:2:3:4:5:6:7:8", "1:2:3:4::5:6:7:8", false},
    {"a run in the pattern is zero", "fe80::2:1", "fe80::1", false},
    {"a group for any", "fe80::1234", "fe80::*", true},
    {"a wildcard is a whole group", "fe80::12", "fe80::1*", false},
    {"nine groups", "1:2:3:4:5:6:7:8:9", "*:*:*:*:*:*:*:*", false},
    {"five digits", "::00001", "::1", false},
    {"three colons", ":::", "::", false},
    {"a colon at the end behind a run", "::1:", "::1", false},
    {"an embedded IPv4 part", "::ffff:192.0.2.7", "::ffff:*:*", false},
    {"no digit behind one", "::1g", "::1", false},
};

TEST(AddressPatterns, Ipv4PartsAndWildcards) {
  for (const PatternCase& c : kIpv4) EXPECT_EQ(ipv4_pattern_matches(c.address, c.pattern), c.matches) << c.what;
}

TEST(AddressPatterns, Ipv6GroupsAreNumbers) {
  for (const PatternCase& c : kIpv6) EXPECT_EQ(ipv6_pattern_matches(c.address, c.pattern), c.matches) << c.what;
}

}  // namespace
}  // namespace pv
