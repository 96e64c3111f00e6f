#include "pvfilter/message_run.h"

#include "platform/file.h"
#include "platform/output_capture.h"

namespace pvfilter {
namespace fs = std::filesystem;
namespace {

Fate fate_of(const QueuedMessage& queued, MessageRun& run) {
  std::error_code error;
  if (!fs::exists(queued.message_file, error)) return Fate::kDeleted;
  const auto bytes = pv::platform::read_whole_file(queued.message_file.string(), SIZE_MAX);
  run.bytes_after = bytes ? bytes->size() : 0;
  return bytes && *bytes == queued.bytes ? Fate::kKept : Fate::kChanged;
}

std::vector<fs::path> added_files(const FileMarks& before, const FileMarks& after) {
  std::vector<fs::path> added;
  for (const auto& [path, mark] : after) {
    const auto old = before.find(path);
    if (old == before.end()) added.push_back(path);
  }
  return added;
}

}  // namespace

MessageRun run_message(const Server& server, const AgentLibrary& agent, const EnvelopeOptions& envelope,
                       const std::string& file) {
  MessageRun run;
  const QueuedMessage queued = queue_message(server, envelope, file);
  run.file = file;
  run.id = queued.id;
  run.connector = envelope.connector;
  run.message_file = queued.message_file;
  run.bytes_before = queued.bytes.size();

  const FileMarks before = mark_files(server);
  const ReportLogPosition log(server);
  {
    pv::platform::OutputCapture capture;
    agent.filter(queued.id, envelope.connector);
    run.output = capture.take();
  }
  run.filters_applied = run.output.find("\nProcessFilter: ") != std::string::npos;
  run.fired = find_fired_filters(
      server, run.output,
      server.log_mode == 2 ? printed_report_lines(run.output, queued.id) : log.lines_since(queued.id));
  run.fate = fate_of(queued, run);
  run.new_files = added_files(before, mark_files(server));
  return run;
}

}  // namespace pvfilter
