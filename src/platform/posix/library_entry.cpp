// The library's entry point: the loader runs these two when the library comes and goes.
#include "platform/library_entry.h"

namespace {

[[gnu::constructor]] void loaded() {
  pv::platform::on_library_load();
}

[[gnu::destructor]] void unloaded() {
  pv::platform::on_library_unload();
}

}  // namespace
