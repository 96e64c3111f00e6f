#include "providers/dns_library.h"

#include <optional>
#include <utility>

#include "common/caught_exception.h"
#include "common/never_destroyed.h"
#include "common/output.h"
#include "common/registry_access.h"
#include "common/report_log.h"
#include "platform/library.h"
#include "platform/paths.h"
#include "pvmtafilter/plugin.h"

namespace pv {
namespace {

constexpr char kLibrary[] = "PVWINDNS.DLL";
constexpr char kSourceFile[] = R"(..\SMTP\DNSQuery)";  // what reports name as the place of a look-up's exception
constexpr int kSourceLine = 104;

static_assert(sizeof(ReportLog::current_file_name) == PV_REPORT_FILE_NAME_SIZE);

// Set at start-up, then read-only.
std::optional<platform::Library>& dns_library() {
  static NeverDestroyed<std::optional<platform::Library>> library;
  return *library;
}

// The library may have its own run-time: no exception enters it.
std::int32_t PV_CALL log_line(void*, void*, void*, std::uint32_t level, const char* text) noexcept {
  return report_write_level(nullptr, nullptr, nullptr, level, text);
}

void hand_over_log(const platform::Library& library) {
  void* const mutex = report_mutex_handle();
  if (mutex == nullptr) return;
  if (auto* set_logging = library.find<decltype(SetLoggingFunction)>("SetLoggingFunction")) {
    set_logging(report_log().current_file_name, &log_line, &report_log().file, mutex);
  }
}

std::int32_t initialise(const platform::Library& library, const char* local_dns_servers) {
  auto* const entry = library.find<decltype(DNSInitialize)>("DNSInitialize");
  return entry != nullptr ? entry(local_dns_servers) : 0;
}

}  // namespace

std::int32_t load_dns_library(const char* local_dns_servers) {
  BoundedText<1024> directory;
  reg_read_app_directory(directory, 0);
  std::optional<platform::Library> library = platform::Library::load(platform::join_path({directory, kLibrary}));
  if (!library) return 0;
  dns_library() = std::move(library);
  try {
    hand_over_log(*dns_library());
    return initialise(*dns_library(), local_dns_servers);
  } catch (...) {  // the agent's start goes on, and the look-ups are tried all the same
    report_caught_exception("DNSInitialize", "providers/dns_library.cpp", __LINE__);
    return 0;
  }
}

std::int32_t dns_has_blacklist_entry(const char* host, const char* address, char* scratch, char* list_name) {
  if (!dns_library()) return 0;
  auto* const entry = dns_library()->find<decltype(HasORBDBEntry)>("HasORBDBEntry");
  if (entry == nullptr) return 0;
  hand_over_output();
  try {
    return entry(host, address, scratch, list_name);
  } catch (...) {
    report_caught_exception("HasORBDBEntry", kSourceFile, kSourceLine);
    throw;
  }
}

void forget_dns_library() {
  if (dns_library()) dns_library()->keep_loaded();
  dns_library().reset();
}

}  // namespace pv
