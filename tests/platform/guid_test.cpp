#include "platform/guid.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>

namespace pv {
namespace {

TEST(Guid, IsRandomAndSaysSo) {
  std::set<std::tuple<std::uint32_t, std::uint16_t, std::uint16_t, std::array<std::uint8_t, 8>>> seen;
  for (int i = 0; i < 1000; ++i) {
    const platform::Guid guid = platform::new_guid();
    EXPECT_EQ(guid.data3 >> 12, 4);
    EXPECT_EQ(guid.data4[0] >> 6, 2);
    seen.emplace(guid.data1, guid.data2, guid.data3, guid.data4);
  }
  EXPECT_EQ(seen.size(), 1000u);
}

}  // namespace
}  // namespace pv
