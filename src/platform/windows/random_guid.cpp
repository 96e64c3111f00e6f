#include "platform/random_guid.h"

#include <combaseapi.h>
#include <windows.h>

#include <algorithm>
#include <iterator>

namespace pv::platform {

bool fill_randomly(Guid& guid) {
  GUID made{};
  if (FAILED(::CoCreateGuid(&made))) return false;
  guid.data1 = static_cast<std::uint32_t>(made.Data1);
  guid.data2 = made.Data2;
  guid.data3 = made.Data3;
  std::copy(std::begin(made.Data4), std::end(made.Data4), guid.data4.begin());
  return true;
}

}  // namespace pv::platform
