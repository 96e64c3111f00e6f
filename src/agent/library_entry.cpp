#include "platform/library_entry.h"

#include "agent/lifecycle.h"

namespace pv::platform {

void on_library_load() noexcept {
  attach();
}
void on_library_unload() noexcept {
  detach();
}

}  // namespace pv::platform
