// A library for the tests to load.
#include <cstdio>

#include "pvmtafilter/plugin.h"

#define EXPORTED extern "C" [[gnu::visibility("default")]]

EXPORTED int plugin_number() {
  return 42;
}

EXPORTED int32_t PV_CALL plugin_difference(int32_t a, int32_t b) {
  return a - b;
}

EXPORTED void plugin_print() {
  std::printf("the plug-in's\n");
  std::fflush(stdout);
}
