// One message through the agent, and what could be observed of it.
#pragma once

#include <string>
#include <vector>

#include "pvfilter/agent_library.h"
#include "pvfilter/fired_filters.h"
#include "pvfilter/queued_message.h"
#include "pvfilter/server_tree.h"

namespace pvfilter {

enum class Fate { kKept, kChanged, kDeleted };

// A message that the agent queued itself: a notification or a forwarded copy.
struct NewMessage {
  std::filesystem::path message_file;
  std::filesystem::path command_file;
  std::string recipients;  // as its command file has them
};

struct MessageRun {
  std::string file;
  std::string id;
  std::string connector;
  std::filesystem::path message_file;
  std::size_t bytes_before = 0;
  std::size_t bytes_after = 0;
  bool filters_applied = false;  // the agent went on to decide which filters fire
  std::vector<FiredFilter> fired;
  Fate fate = Fate::kKept;
  std::string recipients;         // as the command file has them now
  bool other_recipients = false;  // they were others before
  std::vector<NewMessage> new_messages;
  std::vector<std::filesystem::path> new_files;      // copies; not the files of new messages
  std::vector<std::filesystem::path> changed_files;  // others than the message's own
  std::string output;                                // what the agent printed
};

// Queues the file, has the agent filter it, and looks at what it printed, reported and did to the files.
MessageRun run_message(const Server& server, const AgentLibrary& agent, const EnvelopeOptions& envelope,
                       const std::string& file);

}  // namespace pvfilter
