// The program that the tests start; it lies beside them.
#pragma once

#include <string>

#include "platform/environment.h"
#include "platform/paths.h"

namespace pv::test {

// As the first word of a command line.
inline std::string helper() {
  return "\"" + platform::join_path({platform::program_directory(), "process_helper"}) + "\"";
}

}  // namespace pv::test
