#include "platform/guid.h"

#include <atomic>
#include <chrono>
#include <cstdio>

#include "platform/environment.h"
#include "platform/random_guid.h"

namespace pv::platform {
namespace {

// Where there is no random source: not random, but still different in every process and at every call. The bits that
// version and variant take are the highest of the process and of the time, which do not tell calls apart.
void fill_uniquely(Guid& guid) {
  static constinit std::atomic<std::uint32_t> calls = 0;
  guid.data1 = calls.fetch_add(1, std::memory_order_relaxed);
  const std::uint64_t process = process_id();
  guid.data2 = static_cast<std::uint16_t>(process);
  guid.data3 = static_cast<std::uint16_t>(process >> 16);
  auto time = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
  for (std::size_t i = guid.data4.size(); i-- > 0; time >>= 8) guid.data4[i] = static_cast<std::uint8_t>(time);
}

}  // namespace

Guid new_guid() {
  static_assert(sizeof(Guid) == 16, "every bit is filled, no padding");
  Guid guid;
  if (!fill_randomly(guid)) fill_uniquely(guid);
  guid.data3 = static_cast<std::uint16_t>((guid.data3 & 0x0fffu) | 0x4000u);   // version 4
  guid.data4[0] = static_cast<std::uint8_t>((guid.data4[0] & 0x3fu) | 0x80u);  // the variant of RFC 4122
  return guid;
}

std::string guid_digits(const Guid& guid) {
  char digits[33];
  std::snprintf(digits, sizeof digits, "%08X%04X%04X", static_cast<unsigned>(guid.data1), unsigned{guid.data2},
                unsigned{guid.data3});
  for (std::size_t i = 0; i < guid.data4.size(); ++i) {
    std::snprintf(digits + 16 + 2 * i, 3, "%02X", unsigned{guid.data4[i]});
  }
  return digits;
}

}  // namespace pv::platform
