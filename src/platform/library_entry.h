// Start and end of the agent library in the process that loads it.
//
// The library's entry point, which differs between systems, calls the two functions; the agent defines them. They run
// on the loader's thread, before the first and after the last export call, and may throw nothing.
#pragma once

namespace pv::platform {

void on_library_load() noexcept;
void on_library_unload() noexcept;

}  // namespace pv::platform
