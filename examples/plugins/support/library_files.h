// The files that lie beside a plug-in library.
#pragma once

#include <string>
#include <string_view>

namespace example {

// The path of the library that this is linked into, with another extension: "words" beside "/srv/app/PVFLTMBF.so" is
// "/srv/app/PVFLTMBF.words". Empty when the system does not know.
std::string path_beside_library(std::string_view extension);

// The directory of that library, with its last separator; empty when the library was loaded without one.
std::string library_directory();

}  // namespace example
