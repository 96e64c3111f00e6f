#include "providers/load_scanners.h"

#include "common/agent_settings.h"
#include "common/output.h"
#include "providers/counters.h"
#include "providers/scanner_provider.h"

namespace pv {

void load_dkim_scanner() {
  ScannerProvider& provider = scanner_providers().dkim;
  provider.status = static_cast<std::int32_t>(settings().domain_keys_status);
  if (provider.status == 0) return;
  provider.status =
      load_filter_provider(provider.display_name, provider_path(provider.library_file), provider, /*initialise=*/true);
}

void load_bayesian_scanner() {
  ScannerProvider& provider = scanner_providers().bayesian;
  provider.status = static_cast<std::int32_t>(settings().bayesian_filtering_status);
  if (provider.status == 0) return;
  if (load_library(provider, provider_path(provider.library_file))) {
    print("%s Loading Library..\n", provider.display_name);
    print("%s - Loading Dictionary..\n", provider.display_name);
    resolve_entries(provider, EntryNames::kWithFallbacks);
    if (settings().bayesian_filtering_load_mode != 0) provider.status = examine_entries(provider);
  }
  counters.bayesian_detections.publish();
  counters.bayesian_total_scans.publish();
}

void load_spam_assassin_scanner() {
  ScannerProvider& provider = scanner_providers().spam_assassin;
  provider.status = spamassassin_enabled() ? provider_status::kOn : 0;
  if (provider.status == 0) return;
  if (load_library(provider, provider_path(provider.library_file))) {
    print("%s Loading Library..\n", provider.display_name);
    resolve_entries(provider, EntryNames::kPreferredOnly);
    provider.status = examine_entries(provider);
  }
  counters.sa_detections.publish();
  counters.sa_total_scans.publish();
}

void load_antivirus_scanner() {
  AntivirusProvider& provider = scanner_providers().antivirus;
  provider.status = static_cast<std::int32_t>(settings().antivirus_status);
  if (provider.status == 0) return;
  provider.module = platform::Library::load(provider_path(provider.library_file));
  if (provider.module) {
    print("Antivirus Loading Library..\n");
    provider.execute = provider.module->find<decltype(ProviderExecute)>("ProviderExecute");
  } else {
    print("Antivirus Loading - Unable to locate Filter Provider.\n");
  }
  counters.antivirus_detected.publish();
  counters.antivirus_total_scans.publish();
}

void release_scanners() {
  ScannerProviders& providers = scanner_providers();
  release_provider(providers.bayesian);
  release_provider(providers.dkim);
  release_provider(providers.spam_assassin);
  providers.antivirus.status = 0;
  providers.antivirus.execute = nullptr;
  providers.antivirus.module.reset();
  restart_counters();
}

}  // namespace pv
