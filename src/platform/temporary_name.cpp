#include <cstdio>

#include "platform/file.h"
#include "platform/guid.h"

namespace pv::platform {

std::string temporary_beside(std::string_view path) {
  const std::size_t name = path.find_last_of("/\\") + 1;
  const Guid guid = new_guid();
  char digits[33];
  std::snprintf(digits, sizeof digits, "%08X%04X%04X", static_cast<unsigned>(guid.data1),
                static_cast<unsigned>(guid.data2), static_cast<unsigned>(guid.data3));
  for (std::size_t i = 0; i < guid.data4.size(); ++i) {
    std::snprintf(digits + 16 + 2 * i, 3, "%02X", static_cast<unsigned>(guid.data4[i]));
  }
  std::string temporary(path.substr(0, name));
  temporary.append("_").append(path.substr(name)).append(".").append(digits).append(".tmp");
  return temporary;
}

}  // namespace pv::platform
