#include "platform/path_parts.h"

#include "platform/paths.h"

namespace pv::platform {

std::string join_path(std::initializer_list<std::string_view> components) {
  std::string path;
  bool first = true;
  for (const std::string_view component : components) {
    if (!first) path += kPathSeparator;
    path += component;
    first = false;
  }
  return path;
}

std::string_view last_component(std::string_view path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

}  // namespace pv::platform
