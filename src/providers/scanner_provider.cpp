#include "providers/scanner_provider.h"

#include "common/agent_settings.h"
#include "common/caught_exception.h"
#include "common/never_destroyed.h"
#include "common/output.h"
#include "platform/paths.h"

namespace pv {
namespace {

ProviderEntry* find_entry(const platform::Library& library, const char* name, const char* fallback, EntryNames names) {
  auto* entry = library.find<ProviderEntry>(name);
  if (entry != nullptr || names == EntryNames::kPreferredOnly) return entry;
  return library.find<ProviderEntry>(fallback);
}

// The calls at start-up and shutdown, whose result does not matter: whatever the plug-in does, the agent goes on.
void call_without_request(ProviderEntry* entry, const char* name, int line) {
  ProviderReply discarded;
  try {
    ask_provider(entry, "", 0, discarded);
  } catch (...) {
    report_caught_exception(name, "providers/scanner_provider.cpp", line);
  }
}

}  // namespace

ScannerProviders& scanner_providers() {
  static NeverDestroyed<ScannerProviders> providers;
  return *providers;
}

std::string provider_path(const char* library_file) {
  return platform::join_path({settings().application_directory, library_file});
}

bool load_library(ScannerProvider& provider, const std::string& path) {
  provider.module = platform::Library::load(path);
  if (provider.module) return true;
  print("%s - Unable to locate Filter Provider.\n", provider.display_name);
  return false;
}

void resolve_entries(ScannerProvider& provider, EntryNames names) {
  provider.initialize = find_entry(*provider.module, "PV_Initialize", "Initialize", names);
  provider.execute = find_entry(*provider.module, "PV_Execute", "Execute", names);
  provider.clean_up = find_entry(*provider.module, "PV_CleanUp", "CleanUp", names);
}

std::int32_t examine_entries(ScannerProvider& provider) {
  if (provider.initialize == nullptr || provider.execute == nullptr || provider.clean_up == nullptr) {
    print("%s - Loading Failed.\n", provider.display_name);
    return provider_status::kEntriesMissing;
  }
  print("%s - Loading Complete.\n", provider.display_name);
  call_without_request(provider.initialize, "PV_Initialize", __LINE__);
  return provider_status::kOn;
}

std::int32_t load_filter_provider(const char* display_name, const std::string& library_path, ScannerProvider& provider,
                                  bool initialise) {
  provider.display_name = display_name;
  if (!load_library(provider, library_path)) return provider_status::kOn;
  print("%s Loading Library..\n", provider.display_name);
  resolve_entries(provider, EntryNames::kWithFallbacks);
  return initialise ? examine_entries(provider) : provider_status::kOn;
}

void release_provider(ScannerProvider& provider) {
  provider.status = 0;
  if (!provider.module) return;
  if (provider.clean_up != nullptr) call_without_request(provider.clean_up, "PV_CleanUp", __LINE__);
  provider.initialize = provider.execute = provider.clean_up = nullptr;
  provider.module.reset();
}

std::int32_t ask_provider(ProviderEntry* entry, std::string_view request, std::int32_t reply_length,
                          ProviderReply& reply) {
  hand_over_output();
  return entry(request.data(), static_cast<std::int32_t>(request.size()), reply.buffer(), &reply_length);
}

}  // namespace pv
