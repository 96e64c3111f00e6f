#include "platform/random_guid.h"

#include <sys/random.h>

#include <cerrno>

namespace pv::platform {

bool fill_randomly(Guid& guid) {
  ssize_t got;
  do {
    got = ::getrandom(&guid, sizeof guid, 0);  // so few bytes come whole or not at all
  } while (got < 0 && errno == EINTR);
  return got == static_cast<ssize_t>(sizeof guid);
}

}  // namespace pv::platform
