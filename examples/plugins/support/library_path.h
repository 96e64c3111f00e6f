// What differs between systems.
#pragma once

#include <string>

namespace example {

// The path of the library that this is linked into, as it was loaded; empty when the system does not know.
std::string library_path();

}  // namespace example
