// Paths in this system's spelling, for expectations that are written with '/'.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/paths.h"

namespace pv::test {

inline std::string native_path(std::string_view path) {
  std::string native(path);
  std::replace(native.begin(), native.end(), '/', platform::kPathSeparator);
  return native;
}

}  // namespace pv::test
