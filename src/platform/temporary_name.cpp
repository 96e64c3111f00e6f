#include "platform/file.h"
#include "platform/guid.h"

namespace pv::platform {

std::string temporary_beside(std::string_view path) {
  const std::size_t name = path.find_last_of("/\\") + 1;
  std::string temporary(path.substr(0, name));
  temporary.append("_").append(path.substr(name)).append(".").append(guid_digits(new_guid())).append(".tmp");
  return temporary;
}

}  // namespace pv::platform
