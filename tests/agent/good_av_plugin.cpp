// Notes in the environment's file that it was initialised.
#include <cstdio>
#include <cstdlib>

#include "pvmtafilter/plugin.h"

extern "C" int32_t PV_CALL PluginInitialize(void) {
  if (const char* path = std::getenv("PLUGIN_TEST_FILE")) {
    if (std::FILE* file = std::fopen(path, "ab")) {
      std::fputs("initialised\n", file);
      std::fclose(file);
    }
  }
  return 0;
}
