#include "pvfilter/agent_library.h"

#include "platform/environment.h"
#include "platform/output_capture.h"
#include "pvfilter/exit_status.h"

namespace pvfilter {
namespace fs = std::filesystem;
namespace {

constexpr char kLibraryName[] = "PVMTAFILTER.DLL";  // PVMTAFILTER.so here

pv::platform::Library load(const std::string& path) {
  std::string reason;
  if (!path.empty()) {
    if (auto library = pv::platform::Library::load(path, &reason)) return std::move(*library);
    throw CommandError(kUnavailable, path + ": " + reason);
  }
  const fs::path program = pv::platform::program_directory();
  for (const fs::path& directory : {program, program / ".." / "lib", program / ".." / "lib" / "pvmtafilter"}) {
    if (auto library = pv::platform::Library::load((directory / kLibraryName).string())) return std::move(*library);
  }
  throw CommandError(kUnavailable, "the agent library PVMTAFILTER is not beside this program; name it with --agent");
}

}  // namespace

AgentLibrary::AgentLibrary(const std::string& path) {
  pv::platform::OutputCapture capture;
  library_ = load(path);
  execute_ = library_->find<decltype(FilterExecute)>("FilterExecute");
  auto* initialise = library_->find<decltype(FilterInit)>("FilterInit");
  if (execute_ == nullptr || initialise == nullptr) {
    throw CommandError(kUnavailable, "the library has no FilterExecute and FilterInit: it is not the agent");
  }
  initialise(0);
  startup_output_ = capture.take();
}

AgentLibrary::~AgentLibrary() {
  const pv::platform::OutputCapture silent;
  library_.reset();
}

void AgentLibrary::filter(const std::string& message_id, const std::string& connector) const {
  execute_("", message_id.c_str(), connector.c_str(), 0);
}

}  // namespace pvfilter
