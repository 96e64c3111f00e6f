// Globally unique identifiers.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace pv::platform {

struct Guid {
  std::uint32_t data1 = 0;
  std::uint16_t data2 = 0;
  std::uint16_t data3 = 0;
  std::array<std::uint8_t, 8> data4{};
};

// A new version 4 GUID from the system's random source.
Guid new_guid();

// 32 upper-case hexadecimal digits without separators: the parts in their order, the last eight bytes as stored.
std::string guid_digits(const Guid& guid);

}  // namespace pv::platform
