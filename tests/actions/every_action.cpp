#include "actions/every_action.h"

#include <filesystem>
#include <fstream>

#include "actions/dispatcher.h"
#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "platform/output_capture.h"

namespace pv::test {
namespace fs = std::filesystem;
namespace {

const char* const kDataDirectories[] = {"queues", "badmail", "quarantine", "mail"};

std::string message_of_lines(int lines) {
  std::string bytes = "Subject: hello\r\nContent-Type: multipart/mixed;\r\n boundary=\"b\"\r\n\r\npreamble\r\n--b\r\n";
  bytes += "Content-Type: text/plain;\r\n charset=utf-8\r\n\r\n";
  for (int i = 0; i < lines; ++i) bytes += "A line of text that is neither short nor long.\r\n";
  return bytes + "--b--\r\n";
}

// Every new identifier as "NEW.MAI".
std::string with_new_names(std::string text) {
  constexpr std::size_t kDigits = 32;
  for (std::size_t end = text.find(".MAI"); end != std::string::npos; end = text.find(".MAI", end)) {
    const std::size_t begin = end < kDigits ? end : end - kDigits;
    const bool is_new = end >= kDigits && text.find_first_not_of("0123456789ABCDEF", begin) == end;
    if (is_new) text.replace(begin, kDigits, "NEW");
    end = is_new ? begin + 4 : end + 1;
  }
  return text;
}

void drop_value(std::string& text, std::string_view name) {
  const std::size_t at = text.find(name);
  if (at != std::string::npos) text.erase(at, text.find('\r', at) - at);
}

std::string normalised(const std::string& bytes) {
  std::string text = with_new_names(bytes);
  drop_value(text, "Date: ");
  drop_value(text, "TimeAcquired=");
  return text;
}

std::string bytes_of(const fs::path& path) {
  if (!fs::exists(path)) return {};
  std::string bytes(static_cast<std::size_t>(fs::file_size(path)), '\0');
  std::ifstream in(path, std::ios::binary);
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

bool is_command_file(const std::string& path) {
  const fs::path directory = fs::path(path).parent_path().filename();
  return directory == "Inbound" || directory == "Outgoing";
}

bool is_flag(const std::string& path) {
  return fs::path(path).extension() == ".DTY";
}

std::string message_of(const std::string& command_file) {
  const fs::path path(command_file);
  return (path.parent_path() / "Messages" / path.filename()).generic_string();
}

bool same(const Files& a, const Files& b, const std::string& path) {
  const auto in_a = a.find(path);
  const auto in_b = b.find(path);
  if (in_a == a.end() || in_b == b.end()) return in_a == a.end() && in_b == b.end();
  return in_a->second == in_b->second;
}

MessageContext queued_message() {
  MessageContext message;
  message.connector.cut("SMTP");
  message.message_id.cut("M1.MAI");
  message.directories = reread_directories();
  message.envelope.recipients = "[SMTP:joe@example.com]";
  message.envelope.sender.cut("[SMTP:ann@example.com]");
  message.envelope.user.cut("jane");
  return message;
}

}  // namespace

std::vector<ActionCase> every_action() {
  constexpr char kReference[] = "<REFERENCE><FILE>T</FILE><ADDRESS>admin@example.com</ADDRESS>";
  constexpr char kPlainReference[] = "<REFERENCE><ADDRESS>admin@example.com</ADDRESS>";
  return {
      {.keyword = "DELETE"},
      {.keyword = "COPY_TO_BADMAIL"},
      {.keyword = "COPY_TO_QUARANTINE"},
      {.keyword = "ADD_SUBJECT_PREFIX", .data = "[SPAM] ", .always_recorded = true},
      {.keyword = "NOTIFY_SENDER", .queues = true},
      {.keyword = "NOTIFY_SENDER", .data = "T", .fallback = "", .queues = true},
      {.keyword = "NOTIFY_ADDRESS", .data = kReference, .fallback = kPlainReference, .queues = true},
      {.keyword = "FORWARD_TO_ADDRESS", .data = "admin@example.com", .queues = true},
      {.keyword = "EXECUTE_APPLICATION", .data = ACTION_PROGRAM "|[ID]"},
      {.keyword = "ADD_HEADER", .data = "X-A|b"},
      {.keyword = "NOTIFY_RECIPIENTS", .data = "T", .fallback = "", .queues = true},
      {.keyword = "APPEND_RECIPIENTS"},
      {.keyword = "APPEND_ANNOTATIONS", .data = "2"},
      {.keyword = "STOP_PROCESSING", .ends_table = true},
      {.keyword = "DELETE", .mailbox_rule = true, .ends_table = true},
      {.keyword = "JUNK", .mailbox_rule = true},
      {.keyword = "QUARANTINE", .mailbox_rule = true},
      {.keyword = "COPY", .data = "Work", .mailbox_rule = true, .always_recorded = true},
      {.keyword = "MOVE", .data = "Work", .mailbox_rule = true},
      {.keyword = "PREFIX-SUBJECT", .data = "[SPAM] ", .mailbox_rule = true, .always_recorded = true},
  };
}

// More than the buffers hold, so that reading and writing take several steps; short where every line is one.
Files original_files() {
  const std::string message = message_of_lines(1500);
  const std::string short_message = message_of_lines(3);
  const std::string envelope = "Recipients=[SMTP:joe@example.com]\r\nSender=[SMTP:ann@example.com]\r\n";
  return {
      {"queues/SMTP/Inbound/M1.MAI", envelope},
      {"queues/SMTP/Inbound/Messages/M1.MAI", message},
      {"queues/SMTP/Outgoing/M1.MAI", envelope},
      {"queues/SMTP/Outgoing/Messages/M1.MAI", message},
      {"queues/LS/Outgoing/Messages/M1.MAI", short_message},
      {"mail/po/MAILROOT/jane/M1.MAI", short_message},
      {"mail/po/MAILROOT/jane/Quarantine/M1.MAI", "an older one"},
      {"badmail/Messages/M1.MAI", "an older one"},
  };
}

ActionServer::ActionServer() : original_(original_files()) {
  tree_.set_text(kSmtpKey, "Bad Mail Notification Sender Address", "postmaster@example.org");
  tree_.set_text(kSmtpKey, "Local Domain Name", "example.org");
  tree_.write("conf/FILTERS/Templates/T.TXT", "Subject: caught\r\n\r\n[PV_HEADERS]\r\nby the filter\r\n");
  tree_.write("conf/Postoffices/System/Annotations/D.TXT", "Checked.\r\n");
  read_server_settings();

  FilterDefinition& filter = set_.filters.emplace_back();
  filter.name.cut("F");
  filter.definition_name.cut("D");
  filter.display_name.cut("admin@example.com");
  filter.slots[kAllMessages].status = 1;
  filter.slots[kAllMessages].minimum_matches = 1;
  results_.matches.emplace_back().match_count[kAllMessages] = 1;
  set_.filter_count = results_.filter_count = 1;
}

ActionServer::~ActionServer() {
  forget_agent_settings();
}

// Only what is different is written: these tests do it very often.
void ActionServer::restore() {
  for (const char* directory : {"mail/po/MAILROOT/jane/Junk E-mail", "mail/po/MAILROOT/jane/Work"})
    tree_.remove(directory);
  for (const auto& [path, bytes] : files()) {
    if (original_.count(path) == 0) remove_all_named(path);
  }
  for (const auto& [path, bytes] : original_) {
    if (bytes_of(tree_.path(path)) != bytes) tree_.write(path, bytes);
  }
}

// New identifiers have one name here and others on the disk.
void ActionServer::remove_all_named(const std::string& path) {
  const std::string directory = fs::path(path).parent_path().generic_string();
  for (const std::string& name : tree_.names(directory)) {
    if (normalised(directory + "/" + name) == path) tree_.remove(directory + "/" + name);
  }
}

Files ActionServer::files() const {
  Files files;
  for (const char* directory : kDataDirectories) {
    for (const auto& entry : fs::recursive_directory_iterator(tree_.path(directory))) {
      if (!entry.is_regular_file()) continue;
      const std::string path = entry.path().lexically_relative(tree_.path()).generic_string();
      files[normalised(path)] += normalised(bytes_of(entry.path()));
    }
  }
  return files;
}

ActionServer::Outcome ActionServer::run(const ActionCase& action) {
  set_.postoffice.cut(action.mailbox_rule ? "po" : "");
  set_.mailbox.cut(action.mailbox_rule ? "jane" : "");
  const std::string next = action.mailbox_rule ? "DELETE" : "STOP_PROCESSING";
  tree_.write(
      action.mailbox_rule ? "conf/Postoffices/po/Mailboxes/jane/RULES/ACTIONS/D.TAB" : "conf/FILTERS/ACTIONS/D.TAB",
      "1\t\t" + action.data + "\t" + action.keyword + "\tpolicy\r\n1\t\t\t" + next + "\t\r\n");
  MessageContext message = queued_message();
  ReportLine report;
  platform::OutputCapture output;
  ExecuteFilterActions(message, set_, results_, report);
  output.take();
  const bool recorded = report.view().find("\t" + action.keyword) != std::string_view::npos;
  const bool next_ran = report.view().find(next + "\t") != std::string_view::npos && !action.ends_table;
  return {action.mailbox_rule && !action.ends_table ? !next_ran : recorded, next_ran};
}

std::string damage(const Files& before, const Files& finished, const Files& now, bool leftovers) {
  for (const auto& [path, bytes] : before) {
    if (!same(before, now, path) && !same(finished, now, path)) return path + " is neither the old file nor the new";
  }
  for (const auto& [path, bytes] : now) {
    if (before.count(path) != 0) continue;
    const bool complete = same(finished, now, path);
    if (is_command_file(path) && !(complete && same(finished, now, message_of(path))))
      return path + " is there before its message is complete";
    if (!complete && !leftovers) return path + " was left behind";
  }
  return {};
}

bool is_finished(const ActionCase& action, const Files& finished, const Files& now) {
  for (const auto& [path, bytes] : finished) {
    if (is_flag(path) || (action.queues && is_command_file(path))) continue;
    if (!same(finished, now, path)) return false;
  }
  return true;
}

}  // namespace pv::test
