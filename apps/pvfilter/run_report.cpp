#include "pvfilter/run_report.h"

#include <nlohmann/json.hpp>
#include <string_view>

namespace pvfilter {
namespace {

constexpr std::string_view kCriterionLead = "CRITERIA=";
constexpr std::string_view kMatchedLead = ", DATA=";

struct Criterion {
  std::string keyword;  // empty for a filter that a script decided
  std::string matched;  // the criterion's own description, with its tags, or the script's result text
};

Criterion criterion_of(const ReportLine& line) {
  const std::string_view data = line.data;
  const std::size_t matched = data.find(kMatchedLead);
  if (!data.starts_with(kCriterionLead) || matched == std::string_view::npos) return {{}, line.data};
  return {std::string(data.substr(kCriterionLead.size(), matched - kCriterionLead.size())),
          std::string(data.substr(matched + kMatchedLead.size()))};
}

std::string joined(const std::vector<std::string>& words, const char* between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

const char* fate_word(Fate fate) {
  switch (fate) {
    case Fate::kKept:
      return "kept";
    case Fate::kChanged:
      return "changed";
    case Fate::kDeleted:
      return "deleted";
  }
  return "unknown";
}

std::string actions_as_text(const FiredFilter& filter) {
  std::string text;
  if (filter.report) text += "    actions  " + joined(filter.report->actions, ", ") + "\n";
  if (!filter.not_done.empty()) text += "    not done " + joined(filter.not_done, ", ") + "\n";
  return text;
}

std::string fired_as_text(const Server& server, const FiredFilter& filter) {
  if (!filter.report) {
    const bool reported = server.log_mode == 1 || server.log_mode == 2;
    return "  fired    " + filter.name +
           (reported
                ? ": no action was carried out\n"
                : ": criterion and actions are not reported, because \"Activity Log Enabled\" is neither 1 nor 2\n") +
           actions_as_text(filter);
  }
  const Criterion criterion = criterion_of(*filter.report);
  return "  fired    " + filter.report->filter + "\n    because  " + criterion.keyword +
         (criterion.keyword.empty() || criterion.matched.empty() ? "" : "  ") + criterion.matched + "\n" +
         actions_as_text(filter);
}

std::string fate_as_text(const Server& server, const MessageRun& run) {
  std::string text = std::string("  message  ") + fate_word(run.fate);
  if (run.fate == Fate::kChanged) {
    text += ", " + std::to_string(run.bytes_before) + " bytes before, " + std::to_string(run.bytes_after) + " now";
  }
  if (run.fate != Fate::kDeleted) text += ": " + shown_path(server, run.message_file);
  text += "\n";
  if (run.other_recipients) text += "  now for  " + run.recipients + "\n";
  for (const NewMessage& message : run.new_messages) {
    text += "  queued   for " + message.recipients + ": " + shown_path(server, message.message_file) + "\n";
  }
  for (const auto& path : run.new_files) text += "  new file " + shown_path(server, path) + "\n";
  for (const auto& path : run.changed_files) text += "  changed  " + shown_path(server, path) + "\n";
  return text;
}

nlohmann::json fired_as_json(const FiredFilter& filter) {
  nlohmann::json json = {{"name", filter.name}, {"definition", filter.definition_name}, {"not_done", filter.not_done}};
  if (!filter.report) {
    json["actions"] = nlohmann::json::array();
    return json;
  }
  const Criterion criterion = criterion_of(*filter.report);
  json["display_name"] = filter.report->filter;
  json["criterion"] = criterion.keyword;
  json["matched"] = criterion.matched;
  json["actions"] = filter.report->actions;
  return json;
}

nlohmann::json paths_as_json(const Server& server, const std::vector<std::filesystem::path>& paths) {
  nlohmann::json shown = nlohmann::json::array();
  for (const auto& path : paths) shown.push_back(shown_path(server, path));
  return shown;
}

nlohmann::json new_messages_as_json(const Server& server, const MessageRun& run) {
  nlohmann::json messages = nlohmann::json::array();
  for (const NewMessage& message : run.new_messages) {
    messages.push_back({{"recipients", message.recipients},
                        {"message_file", shown_path(server, message.message_file)},
                        {"command_file", shown_path(server, message.command_file)}});
  }
  return messages;
}

}  // namespace

std::string run_as_text(const Server& server, const MessageRun& run) {
  std::string text = run.file + "  (" + std::to_string(run.bytes_before) + " bytes, queued in " + run.connector +
                     " as " + run.id + ")\n";
  if (!run.filters_applied) {
    text += "  no filter was applied: there is none, or the message carries the mark X-PVFilter\n";
  } else if (run.fired.empty()) {
    text += "  no filter fired\n";
  }
  for (const FiredFilter& filter : run.fired) text += fired_as_text(server, filter);
  return text + fate_as_text(server, run);
}

std::string run_as_json(const Server& server, const MessageRun& run) {
  nlohmann::json fired = nlohmann::json::array();
  for (const FiredFilter& filter : run.fired) fired.push_back(fired_as_json(filter));
  const nlohmann::json json = {{"file", run.file},
                               {"message_id", run.id},
                               {"connector", run.connector},
                               {"filters_applied", run.filters_applied},
                               {"fired", fired},
                               {"message", fate_word(run.fate)},
                               {"message_file", shown_path(server, run.message_file)},
                               {"bytes_before", run.bytes_before},
                               {"bytes_after", run.bytes_after},
                               {"recipients", run.recipients},
                               {"new_messages", new_messages_as_json(server, run)},
                               {"new_files", paths_as_json(server, run.new_files)},
                               {"changed_files", paths_as_json(server, run.changed_files)},
                               {"output", run.output}};
  return json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace pvfilter
