#include "platform/com.h"

#include <objbase.h>
#include <windows.h>

#include <cstdint>

namespace pv::platform {
namespace {

constinit thread_local int initialisations = 0;
// One bit for each of them, the innermost lowest: whether the system took it. On a thread that the program put into an
// apartment of its own it does not, and giving back what was not taken would take that thread's COM away.
constinit thread_local std::uint64_t taken = 0;

}  // namespace

void initialise_com() {
  const bool done = SUCCEEDED(::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
  taken = (taken << 1) | (done ? 1U : 0U);
  ++initialisations;
}

void uninitialise_com() {
  if ((taken & 1U) != 0) ::CoUninitialize();
  taken >>= 1;
  --initialisations;
}

int com_initialisations_of_thread() {
  return initialisations;
}

}  // namespace pv::platform
