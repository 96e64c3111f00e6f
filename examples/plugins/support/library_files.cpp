#include "support/library_files.h"

#include "support/library_path.h"

namespace example {

std::string path_beside_library(std::string_view extension) {
  const std::string path = library_path();
  const std::string::size_type dot = path.find_last_of("./\\");
  if (dot == std::string::npos || path[dot] != '.') return {};
  return path.substr(0, dot + 1).append(extension);
}

std::string library_directory() {
  const std::string path = library_path();
  return path.substr(0, path.find_last_of("/\\") + 1);
}

}  // namespace example
