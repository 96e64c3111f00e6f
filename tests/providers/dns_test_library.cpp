// DNS look-up libraries for tests, with the entry points that the build names. What a look-up does stands in its host's
// address; what the library was told comes back as the name of the list.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

#include "pvmtafilter/plugin.h"

namespace {

// Each library uses some of these.
[[maybe_unused]] const char* report_name = nullptr;
[[maybe_unused]] PVLogFunction report = nullptr;
[[maybe_unused]] FILE** report_stream = nullptr;
[[maybe_unused]] bool has_mutex = false;
[[maybe_unused]] std::string servers;

[[maybe_unused]] void give(char* list_name, const std::string& text) {
  std::snprintf(list_name, PV_LIST_NAME_SIZE, "%s", text.c_str());
}

[[maybe_unused]] void throw_by_address(const std::string& address) {
  if (address == "192.0.2.11") throw std::runtime_error("no such zone");
  if (address == "192.0.2.12")
    throw pv::ComError(-2147467259, "Unspecified error", "PVWINDNS", "the zone file is damaged");
  if (address == "192.0.2.13") throw 42;
}

}  // namespace

#ifdef WITH_LOGGING
extern "C" int32_t PV_CALL SetLoggingFunction(const char* report_file_name, PVLogFunction log, FILE** report_file,
                                              void* report_mutex) {
  report_name = report_file_name;
  report = log;
  report_stream = report_file;
  has_mutex = report_mutex != nullptr;
  return 0;
}
#endif

#ifdef WITH_INITIALISE
extern "C" int32_t PV_CALL DNSInitialize(const char* local_dns_servers) {
  servers = local_dns_servers;
  if (servers == "throw") throw std::runtime_error("no servers");
  return static_cast<int32_t>(servers.size());
}
#endif

#ifdef WITH_LOOK_UP
extern "C" int32_t PV_CALL HasORBDBEntry(const char* host, const char* address, char* scratch, char* list_name) {
  const std::string asked = *address != '\0' ? address : host;
  throw_by_address(asked);
  if (asked == "192.0.2.1") return give(list_name, "list.example"), 1;
  if (asked == "192.0.2.2") return give(list_name, servers), 2;
  if (asked == "192.0.2.3" && report_name != nullptr) {
    give(list_name, std::string(report_name) + (*report_stream != nullptr ? " open" : " closed"));
    return has_mutex ? 1 : 0;
  }
  if (asked == "192.0.2.4" && report != nullptr) return report(nullptr, nullptr, nullptr, 5, "library line\n");
  if (asked == "192.0.2.5" && report != nullptr) return report(nullptr, nullptr, nullptr, 6, "library line\n");
  if (asked == "192.0.2.6" && report != nullptr) return report(nullptr, nullptr, nullptr, 0xFFFFFFFF, "library line\n");
  if (asked == "192.0.2.9") {
    std::fill_n(scratch, PV_SCRATCH_SIZE, 'x');
    std::fill_n(list_name, PV_LIST_NAME_SIZE, 'x');
    return -7;
  }
  return 0;
}
#endif
