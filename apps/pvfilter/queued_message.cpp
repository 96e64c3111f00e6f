#include "pvfilter/queued_message.h"

#include <limits>

#include "common/dates.h"
#include "common/files.h"
#include "common/text_search.h"
#include "platform/file.h"
#include "platform/system_error.h"
#include "pvfilter/exit_status.h"
#include "queue/queue_paths.h"

namespace pvfilter {
namespace {

// Annotations are put into what this connector delivers.
constexpr std::string_view kMailboxConnector = "LS";

std::string with_crlf(std::string bytes) {
  if (bytes.find("\r\n") != std::string::npos || bytes.find('\n') == std::string::npos) return bytes;
  std::string result;
  result.reserve(bytes.size() + bytes.size() / 32);
  for (const char c : bytes) {
    if (c == '\n') result += '\r';
    result += c;
  }
  return result;
}

std::string read_message(const std::string& file, bool raw) {
  std::optional<std::string> bytes =
      pv::platform::read_whole_file(file, static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()));
  if (!bytes) {
    throw CommandError(kNoInput, file + ": " + pv::platform::system_error_text(pv::platform::last_system_error()));
  }
  return raw ? std::move(*bytes) : with_crlf(std::move(*bytes));
}

// What the mail server notes of the message's Subject header.
std::string subject_of(std::string_view message) {
  std::size_t start = 0;
  while (start < message.size() && message[start] != '\r' && message[start] != '\n') {
    std::size_t end = message.find('\n', start);
    if (end == std::string_view::npos) end = message.size();
    std::string_view line = message.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (pv::starts_with_nocase(line, "Subject:")) {
      line.remove_prefix(std::min(line.find_first_not_of(" \t", 8), line.size()));
      return std::string(line);
    }
    start = end + 1;
  }
  return {};
}

std::string command_text(const EnvelopeOptions& envelope, std::string_view message) {
  std::string recipients;
  for (const std::string& address : envelope.to) {
    if (!recipients.empty()) recipients += ';';
    recipients += "[SMTP:" + address + "]";
  }
  return "Recipients=" + recipients + "\nSender=[SMTP:" + envelope.from +
         "]\nServer=localhost\nClientIP=" + envelope.client_ip + "\nAccount=" + envelope.account +
         "\nStatus=Undelivered\nSubject=" + subject_of(message) +
         "\nTimeAcquired=" + std::to_string(pv::unix_time_now()) +
         "\nAuthenticationStatus=" + std::to_string(envelope.authentication) + "\n";
}

void write_new(const std::filesystem::path& path, pv::platform::FileMode mode, std::string_view bytes) {
  pv::platform::OutputFile file;
  if (file.open(path.string(), mode, pv::platform::Disposition::kCreateNew) && file.write(bytes) && file.close()) {
    return;
  }
  throw CommandError(kCannotCreate,
                     path.string() + ": " + pv::platform::system_error_text(pv::platform::last_system_error()));
}

}  // namespace

QueuedMessage queue_message(const Server& server, const EnvelopeOptions& envelope, const std::string& file) {
  QueuedMessage queued;
  queued.bytes = read_message(file, envelope.raw);

  pv::MessageContext message;
  message.directories = server.directories;
  pv::copy_bounded(message.message_id, pv::new_message_file_name());
  if (!message.connector.assign(envelope.connector)) {
    throw CommandError(kUsage, "--connector: a name of at most 63 characters is needed");
  }
  queued.id = message.message_id.view();
  queued.command_file = pv::command_file_path(message, pv::Queue::kInbound);
  queued.message_file = pv::message_file_path(message, pv::Queue::kInbound);
  if (pv::equals_nocase(envelope.connector, kMailboxConnector)) {
    write_new(pv::message_file_path(message, pv::Queue::kOutgoing), pv::platform::FileMode::kBinary, queued.bytes);
  }
  write_new(queued.message_file, pv::platform::FileMode::kBinary, queued.bytes);
  write_new(queued.command_file, pv::platform::FileMode::kText, command_text(envelope, queued.bytes));
  return queued;
}

}  // namespace pvfilter
