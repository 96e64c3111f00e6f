#include "platform/com.h"

namespace pv::platform {
namespace {

constinit thread_local int initialisations = 0;

}  // namespace

void initialise_com() {
  ++initialisations;
}

void uninitialise_com() {
  --initialisations;
}

int com_initialisations_of_thread() {
  return initialisations;
}

}  // namespace pv::platform
