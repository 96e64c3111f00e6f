#include "support/library_path.h"

#include <dlfcn.h>

namespace example {

std::string library_path() {
  Dl_info library{};
  const bool known = ::dladdr(reinterpret_cast<const void*>(&library_path), &library) != 0;
  return known && library.dli_fname != nullptr ? library.dli_fname : "";
}

}  // namespace example
