// Puts a scanner library of the tests into a server, and tells it what to do.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/library.h"
#include "providers/scanner_script.h"
#include "support/server_tree.h"

namespace pv::test {

// Copies the library `kind` (scanner_libraries.cmake) into the application directory as `name`, such as "PVFLTMBF". A
// copy is a library of its own, with its own script.
inline void install_scanner(const ServerTree& server, const std::string& kind, const std::string& name) {
  std::filesystem::copy_file(std::string(SCANNER_LIBRARIES "/") + kind + LIBRARY_SUFFIX,
                             server.path("app/" + name + LIBRARY_SUFFIX));
}

// An installed library, loaded once more beside the agent.
class ScannerLibrary {
 public:
  ScannerLibrary(const ServerTree& server, const std::string& name)
      : library_(platform::Library::load(server.path("app/" + name + ".DLL"))) {}

  void set(const ScannerScript& script) const { library_.value().find<SetScript>("set_script")(&script); }
  // One line for every call: the entry, its request, the request's length and the reply length it saw.
  std::string calls() const { return library_.value().find<NotedCalls>("noted_calls")(); }
  int number_of_calls() const { return library_.value().find<NumberOfCalls>("number_of_calls")(); }

 private:
  std::optional<platform::Library> library_;
};

}  // namespace pv::test
