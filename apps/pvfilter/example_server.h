// The example server's files, carried inside the program (examples/server in the source tree).
#pragma once

#include <span>
#include <string_view>

namespace pvfilter {

struct ExampleFile {
  std::string_view path;  // below the server's directory
  std::string_view text;  // "@SERVER@" stands for that directory
};

std::span<const ExampleFile> example_files();

}  // namespace pvfilter
