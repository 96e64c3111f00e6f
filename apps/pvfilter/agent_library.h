// The agent, loaded through its exports as a mail server loads it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/library.h"
#include "pvmtafilter/agent.h"

namespace pvfilter {

class AgentLibrary {
 public:
  // Loads the library at `path`, or the one beside this program (or in ../lib of it) when `path` is empty, and calls
  // FilterInit. Throws CommandError.
  explicit AgentLibrary(const std::string& path);
  ~AgentLibrary();  // unloads it; what shutdown prints is not shown
  AgentLibrary(const AgentLibrary&) = delete;
  AgentLibrary& operator=(const AgentLibrary&) = delete;

  void filter(const std::string& message_id, const std::string& connector) const;

  // What start-up printed.
  const std::string& startup_output() const { return startup_output_; }

 private:
  std::optional<pv::platform::Library> library_;
  decltype(FilterExecute)* execute_ = nullptr;
  std::string startup_output_;
};

}  // namespace pvfilter
