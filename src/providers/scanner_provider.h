// The scanner plug-ins: libraries in the application directory, loaded when the agent starts and released when it is
// shut down. In between the records are only read, by any number of message threads.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/library.h"
#include "pvmtafilter/plugin.h"

namespace pv {

using ProviderEntry = decltype(PV_Execute);

// What `status` says of a provider; its scans run only while it is kOn.
namespace provider_status {
inline constexpr std::int32_t kOn = 1;
inline constexpr std::int32_t kEntriesMissing = 3;
}  // namespace provider_status

// A provider that is asked by texts: Bayesian, SpamAssassin, DKIM.
struct ScannerProvider {
  const char* display_name;  // in front of the loading messages
  const char* library_file;
  std::optional<platform::Library> module;
  std::int32_t status = 0;  // 0: switched off; other numbers are the setting's
  ProviderEntry* initialize = nullptr;
  ProviderEntry* execute = nullptr;
  ProviderEntry* clean_up = nullptr;

  bool can_scan() const { return status == provider_status::kOn && execute != nullptr; }
};

struct AntivirusProvider {
  const char* library_file;
  std::optional<platform::Library> module;
  std::int32_t status = 0;
  decltype(ProviderExecute)* execute = nullptr;
};

struct ScannerProviders {
  ScannerProvider bayesian{"Bayesian Filter", "PVFLTMBF.DLL", {}};
  ScannerProvider spam_assassin{"SA Filter", "PVFLTMSA.DLL", {}};
  ScannerProvider dkim{"Domain Keys", "PVDomainKeys.DLL", {}};
  AntivirusProvider antivirus{"PVAVGEN.DLL", {}};
};
ScannerProviders& scanner_providers();

// The path of a library in the application directory.
std::string provider_path(const char* library_file);

// Whether the Bayesian and DKIM names "Initialize", "Execute" and "CleanUp" count for missing entries.
enum class EntryNames { kPreferredOnly, kWithFallbacks };

// The steps of loading a provider. The first prints that a library is missing; the last examines the entries, prints
// what came of it, calls the initialize entry when all three are there and returns the status.
bool load_library(ScannerProvider& provider, const std::string& path);
void resolve_entries(ScannerProvider& provider, EntryNames names);
std::int32_t examine_entries(ScannerProvider& provider);

// All of these steps, with the fallback names, for a provider without rules of its own; `initialise` false leaves the
// entries unexamined and uncalled. The new status: 1, also when there is no library, or 3 when an entry is missing.
std::int32_t load_filter_provider(const char* display_name, const std::string& library_path, ScannerProvider& provider,
                                  bool initialise);

// Calls the clean-up entry, if there is one, and unloads the library.
void release_provider(ScannerProvider& provider);

// The text that a plug-in leaves in its buffer. Terminated by us: a plug-in may fill it to the last byte.
template <std::size_t N>
class PluginText {
 public:
  char* buffer() { return bytes_.data(); }
  std::string_view view() const {
    const std::string_view all(bytes_.data(), N - 1);
    return all.substr(0, all.find('\0'));
  }

 private:
  std::array<char, N> bytes_{};
};
using ProviderReply = PluginText<PV_REPLY_SIZE>;

// Calls an entry with a zero-terminated request. `reply_length` is what the plug-in sees; what it leaves there is not
// looked at. An exception of the plug-in comes out.
std::int32_t ask_provider(ProviderEntry* entry, std::string_view request, std::int32_t reply_length,
                          ProviderReply& reply);

}  // namespace pv
