#include "pvfilter/message_run.h"

#include "actions/one_line.h"
#include "filters/filter_table.h"
#include "platform/file.h"
#include "platform/output_capture.h"

namespace pvfilter {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kFiredLead = "All for rule (";
constexpr std::string_view kFiredMiddle = ") satisfied. Executing associated action (";

// The filters that the agent said it fires, in their order.
std::vector<FiredFilter> fired_filters(std::string_view output) {
  std::vector<FiredFilter> fired;
  for (std::size_t at = output.find(kFiredLead); at != std::string_view::npos; at = output.find(kFiredLead, at)) {
    at += kFiredLead.size();
    const std::size_t middle = output.find(kFiredMiddle, at);
    if (middle == std::string_view::npos) break;
    const std::size_t definition = middle + kFiredMiddle.size();
    const std::size_t end = output.find(").\n", definition);
    if (end == std::string_view::npos) break;
    fired.push_back({std::string(output.substr(at, middle - at)),
                     std::string(output.substr(definition, end - definition)), std::nullopt});
    at = end;
  }
  return fired;
}

// The display names that the filter table gives a filter; reports call it so.
std::string reported_name(const pv::FilterSet& set, const FiredFilter& fired) {
  for (const pv::FilterDefinition& filter : set.filters) {
    if (filter.name.view() == fired.name && filter.definition_name.view() == fired.definition_name) {
      const std::string_view name = filter.display_name;
      return pv::in_one_column(name.substr(0, name.find_last_not_of("\r\n") + 1));
    }
  }
  return fired.name;
}

// A filter without executed actions has no report line, so the lines are matched in order by the filter's name.
void attach_report_lines(std::vector<FiredFilter>& fired, const std::vector<ReportLine>& lines) {
  pv::FilterSet set;
  {
    pv::platform::OutputCapture silent;
    pv::LoadFilterSet(set);
  }
  std::size_t next = 0;
  for (FiredFilter& filter : fired) {
    if (next == lines.size()) return;
    if (lines[next].filter == reported_name(set, filter)) filter.report = lines[next++];
  }
}

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
  run.fired = fired_filters(run.output);
  attach_report_lines(run.fired,
                      server.log_mode == 2 ? printed_report_lines(run.output, queued.id) : log.lines_since(queued.id));
  run.fate = fate_of(queued, run);
  run.new_files = added_files(before, mark_files(server));
  return run;
}

}  // namespace pvfilter
