#include "platform/host_lookup.h"

#include <gtest/gtest.h>

namespace pv {
namespace {

using platform::first_ipv4_address;

TEST(HostLookup, TakesAddressesAndRefusesWhatIsNoHost) {
  EXPECT_EQ(first_ipv4_address("192.0.2.7"), "192.0.2.7");
  EXPECT_EQ(first_ipv4_address(""), std::nullopt);
  EXPECT_EQ(first_ipv4_address(std::string_view("192.0.2.7\0x", 11)), std::nullopt);
  EXPECT_EQ(first_ipv4_address(std::string(256, '1')), std::nullopt);
}

TEST(HostLookup, CanBeReplaced) {
  platform::set_host_lookup_for_test([](std::string_view host) { return std::optional("of " + std::string(host)); });
  EXPECT_EQ(first_ipv4_address("host"), "of host");
  platform::set_host_lookup_for_test(nullptr);
  EXPECT_EQ(first_ipv4_address("192.0.2.7"), "192.0.2.7");
}

}  // namespace
}  // namespace pv
