#include <cstdio>

#include "pvfilter/commands.h"
#include "pvfilter/run_report.h"

namespace pvfilter {
namespace {

// One JSON array whatever the number of files, each object printed as soon as its message is done.
class JsonArray {
 public:
  void add(const std::string& object) {
    std::printf("%s%s", first_ ? "[\n" : ",\n", object.c_str());
    first_ = false;
  }
  void end() const { std::printf("%s\n", first_ ? "[]" : "\n]"); }

 private:
  bool first_ = true;
};

void print_run(const Server& server, const MessageRun& run, bool show_output) {
  std::printf("%s", run_as_text(server, run).c_str());
  if (show_output) std::printf("  ---- the agent's output\n%s  ----\n", run.output.c_str());
  std::fflush(stdout);
}

}  // namespace

ExitStatus run_messages(const RunOptions& options) {
  const Server server = open_server(options.settings);
  const AgentLibrary agent(options.agent_library);
  JsonArray array;
  ExitStatus status = kOk;
  for (const std::string& file : options.files) {
    try {
      const MessageRun run = run_message(server, agent, options.envelope, file);
      if (options.json) {
        array.add(run_as_json(server, run));
      } else {
        print_run(server, run, options.show_output);
      }
    } catch (const CommandError& error) {
      // One unreadable file does not keep the others from their turn.
      std::fprintf(stderr, "pvfilter: %s\n", error.what());
      status = error.status();
    }
  }
  if (options.json) array.end();
  return status;
}

}  // namespace pvfilter
