// The agent's library as a mail server loads it: through its exports.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "platform/environment.h"
#include "platform/library.h"
#include "pvmtafilter/agent.h"
#include "support/server_tree.h"

namespace pv::test {

// A server tree whose settings the library uses, and the library, loaded after the tree was prepared.
class LoadedAgent {
 public:
  explicit LoadedAgent(const ServerTree& server) {
    platform::set_environment_variable("PVMTAFILTER_SETTINGS", server.path("settings.reg"));
    std::string reason;
    std::optional<platform::Library> library = platform::Library::load(AGENT_LIBRARY, &reason);
    if (!library) throw std::runtime_error(reason);
    library_ = std::make_unique<platform::Library>(std::move(*library));
    execute_ = library_->find<decltype(FilterExecute)>("FilterExecute");
  }

  std::int32_t execute(const std::string& message_id, const std::string& connector = "SMTP") const {
    return execute_("unused", message_id.c_str(), connector.c_str(), 7);
  }

  template <class Function>
  Function* find(const char* name) const {
    return library_->find<Function>(name);
  }

 private:
  std::unique_ptr<platform::Library> library_;
  decltype(FilterExecute)* execute_ = nullptr;
};

// The bytes of the tree's report logs.
inline std::string report_log(const ServerTree& server) {
  std::string text;
  for (const std::string& name : server.names("logs")) text += server.read("logs/" + name);
  return text;
}

}  // namespace pv::test
