// PVWINDNS: looks the hosts of links up in DNS blacklists. The zones stand in the file "PVWINDNS.zones" beside the
// library (dns/configuration.h), the name servers in the setting "Local DNS Server List" (dns/resolver.h).
#include "pvmtafilter/plugin.h"

#include <ares.h>

#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "dns/blacklists.h"
#include "support/library_files.h"
#include "support/texts.h"

namespace example {
namespace {

enum LogLevel : uint32_t { kWarning = 3, kInformation = 5 };  // the agent's "Debug Logging Level" is 5 unless set

// Never destroyed: at the end of the process other threads may still ask.
struct State {
  std::mutex mutex;
  std::shared_ptr<Blacklists> blacklists;  // guarded by mutex, as what follows
  PVLogFunction log = nullptr;
};
State& state() {
  static State& state = *new State();
  return state;
}

void log(LogLevel level, const std::string& text) {
  PVLogFunction function = nullptr;
  {
    const std::lock_guard lock(state().mutex);
    function = state().log;
  }
  if (function != nullptr) function(nullptr, nullptr, nullptr, level, ("PVWINDNS: " + text + "\n").c_str());
}

std::shared_ptr<Blacklists> blacklists() {
  const std::lock_guard lock(state().mutex);
  return state().blacklists;
}

// More than once: the library stays loaded when the agent is unloaded, and is initialised again when that comes back.
bool initialise(const char* servers) {
  static const int status = ares_library_init(ARES_LIB_INIT_ALL);
  if (status != ARES_SUCCESS) return false;
  auto fresh = std::make_shared<Blacklists>(read_configuration(path_beside_library("zones")), servers);
  log(kInformation, std::to_string(fresh->configuration().zones.size()) + " blacklist zones");
  const std::lock_guard lock(state().mutex);
  state().blacklists = std::move(fresh);
  return true;
}

bool is_listed(const char* host, const char* address, char* list_name) {
  const std::shared_ptr<Blacklists> lists = blacklists();
  if (lists == nullptr) return false;
  const Finding finding = lists->find(host, address);
  if (finding.unanswered > 0) {
    log(kWarning, std::to_string(finding.unanswered) + " blacklist zones gave no answer about a host");
  }
  fill(list_name, PV_LIST_NAME_SIZE, finding.zone);
  return !finding.zone.empty();
}

}  // namespace
}  // namespace example

extern "C" int32_t PV_CALL SetLoggingFunction(const char*, PVLogFunction log, FILE**, void*) {
  const std::lock_guard lock(example::state().mutex);
  example::state().log = log;
  return 1;
}

extern "C" int32_t PV_CALL DNSInitialize(const char* local_dns_servers) {
  try {
    return example::initialise(local_dns_servers) ? 1 : 0;
  } catch (...) {  // no memory
    return 0;
  }
}

// Called on several threads at once. No memory is no reason to end the filtering of a message, so nothing is thrown.
extern "C" int32_t PV_CALL HasORBDBEntry(const char* host, const char* address, char*, char* list_name) {
  try {
    return example::is_listed(host, address, list_name) ? 1 : 0;
  } catch (...) {
    return 0;
  }
}
