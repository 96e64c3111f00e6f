#include "pvfilter/message_run.h"

#include <algorithm>

#include "platform/file.h"
#include "platform/output_capture.h"
#include "queue/envelope_file.h"

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

std::vector<fs::path> changed_files(const FileMarks& before, const FileMarks& after, const QueuedMessage& queued) {
  std::vector<fs::path> changed;
  for (const auto& [path, mark] : after) {
    const auto old = before.find(path);
    const bool own = path == queued.message_file || path == queued.command_file;
    if (old != before.end() && old->second != mark && !own) changed.push_back(path);
  }
  return changed;
}

// The agent says so on a line of its own, unless a notification's template was named before: its path has no line end.
bool shows_decision(std::string_view output) {
  return output.find("\nProcessFilter: ") != std::string_view::npos ||
         output.find(".TXTProcessFilter: ") != std::string_view::npos;
}

// The recipients in a command file of an inbound queue.
std::string recipients_in(const Server& server, const fs::path& command_file) {
  pv::MessageContext message;
  message.directories = server.directories;
  pv::copy_bounded(message.connector, command_file.parent_path().parent_path().filename().string());
  pv::copy_bounded(message.message_id, command_file.filename().string());
  pv::read_inbound_envelope(message);
  return message.envelope.recipients;
}

// Takes the messages in inbound queues, which have a command file and a message file, out of the files.
std::vector<NewMessage> take_new_messages(const Server& server, std::vector<fs::path>& files) {
  std::vector<NewMessage> messages;
  for (const fs::path& path : files) {
    if (path.parent_path().filename() != "Inbound") continue;
    const fs::path message_file = path.parent_path() / "Messages" / path.filename();
    if (std::find(files.begin(), files.end(), message_file) == files.end()) continue;
    messages.push_back({message_file, path, recipients_in(server, path)});
  }
  for (const NewMessage& message : messages) {
    std::erase(files, message.message_file);
    std::erase(files, message.command_file);
  }
  return messages;
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

  const std::string recipients = recipients_in(server, queued.command_file);
  const FileMarks before = mark_files(server);
  const ReportLogPosition log(server);
  {
    pv::platform::OutputCapture capture;
    agent.filter(queued.id, envelope.connector);
    run.output = capture.take();
  }
  run.filters_applied = shows_decision(run.output);
  run.fired = find_fired_filters(
      server, run.output,
      server.log_mode == 2 ? printed_report_lines(run.output, queued.id) : log.lines_since(queued.id));
  run.fate = fate_of(queued, run);
  run.recipients = recipients_in(server, queued.command_file);
  run.other_recipients = run.fate != Fate::kDeleted && run.recipients != recipients;
  const FileMarks after = mark_files(server);
  run.new_files = added_files(before, after);
  run.changed_files = changed_files(before, after, queued);
  run.new_messages = take_new_messages(server, run.new_files);
  return run;
}

}  // namespace pvfilter
