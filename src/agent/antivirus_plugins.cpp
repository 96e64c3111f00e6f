#include "agent/antivirus_plugins.h"

#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "common/agent_settings.h"
#include "common/fields.h"
#include "common/never_destroyed.h"
#include "common/output.h"
#include "common/registry_access.h"
#include "common/text_search.h"
#include "platform/library.h"
#include "platform/paths.h"
#include "pvmtafilter/plugin.h"

namespace pv {
namespace {

// Held while plug-ins are loaded or released: FilterInit may be called on several threads.
std::mutex& plugin_mutex() {
  static NeverDestroyed<std::mutex> mutex;
  return *mutex;
}

using PluginName = BoundedText<128>;

// One slot: a later plug-in takes the place of an earlier one, which stays loaded to the end of the process.
std::optional<platform::Library>& last_plugin() {
  static NeverDestroyed<std::optional<platform::Library>> plugin;
  return *plugin;
}

// The library that another agent's settings name, when that agent and its plug-in are switched on.
std::optional<PluginName> enabled_plugin(std::string_view agent) {
  const std::string key = std::string(kFiltersKey) + "\\" + std::string(agent);
  if (reg_read_dword_or(key, "Status", 0) != 1) return std::nullopt;
  if (reg_read_dword_or(key, "Antivirus Agent Plugin Enabled", 0) != 1) return std::nullopt;
  PluginName provider;
  if (!reg_read_string(key, "Antivirus Agent Plugin Provider", provider)) return std::nullopt;
  return provider;
}

bool load_plugin(std::string_view provider) {
  print("Antivirus Plugin Provider loading library..\n");
  std::optional<platform::Library> library =
      platform::Library::load(platform::join_path({settings().application_directory, provider}));
  if (!library) {
    print("Antivirus Loading - Unable to locate AV Plugin Provider.\n");
    return false;
  }
  if (last_plugin()) last_plugin()->keep_loaded();
  last_plugin() = std::move(library);
  if (auto* initialise = last_plugin()->find<decltype(PluginInitialize)>("PluginInitialize")) {
    initialise();
  } else {
    print("Antivirus Loading - Unable to locate AV Plugin Initialize.\n");
  }
  return true;
}

}  // namespace

bool load_antivirus_plugins() {
  const std::lock_guard lock(plugin_mutex());
  BoundedText<1024> order;
  reg_read_string(kFiltersKey, "Processing Order", order);
  const int count = count_fields(order, ",");
  for (int number = 1; number <= count; ++number) {
    PluginName agent;
    split_field(order, ",", number, agent);
    if (agent.empty() || equals_nocase(agent, "MTAFILTER")) continue;
    const std::optional<PluginName> provider = enabled_plugin(agent);
    if (provider && !load_plugin(*provider)) return false;
  }
  return true;
}

void release_antivirus_plugin() {
  const std::unique_lock lock(plugin_mutex(), std::try_to_lock);
  if (lock.owns_lock()) last_plugin().reset();  // else a thread was ended while it loaded one
}

}  // namespace pv
