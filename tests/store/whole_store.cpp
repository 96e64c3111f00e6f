// A store library that counts how often it is initialised, and notes its calls in the environment's file.
#include <cstdio>
#include <cstdlib>

#include "pvmtafilter/plugin.h"

#define EXPORTED extern "C" PV_EXPORT

namespace {

int32_t initialised = 0;

void note(const char* call) {
  const char* path = std::getenv("PLUGIN_TEST_FILE");
  std::FILE* file = path == nullptr ? nullptr : std::fopen(path, "ab");
  if (file == nullptr) return;
  std::fputs(call, file);
  std::fclose(file);
}

}  // namespace

EXPORTED int32_t PV_CALL StoreLibrary_Init(void) {
  ++initialised;
  note("init ");
  return 41;
}

EXPORTED int32_t PV_CALL StoreLibrary_UnInit(void) {
  note("uninit ");
  return 42;
}

EXPORTED int32_t RemoveMailboxShares() {
  return initialised;
}
