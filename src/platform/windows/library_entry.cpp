// The library's entry point. The loader calls it under its own lock, where a library should hardly do more than set its
// variables. The agent's start-up and shutdown belong here all the same, because a mail server relies on both having
// run when the load and the unload return. What the lock would rather not see of them: loading and unloading libraries
// (the scanner providers, the plug-ins, and those that the registry, the sockets and COM bring in) and calling into
// them; and waiting for a mutex that another thread may hold, the report log's above all. None of it starts a thread or
// waits for one, which alone would be sure to stand still.
#include "platform/library_entry.h"

#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) pv::platform::on_library_load();
  if (reason == DLL_PROCESS_DETACH) pv::platform::on_library_unload();
  return TRUE;
}
