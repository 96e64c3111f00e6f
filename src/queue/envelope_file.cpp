#include "queue/envelope_file.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "common/fields.h"
#include "common/formats.h"
#include "platform/file.h"
#include "queue/queue_paths.h"

namespace pv {

namespace {

constexpr std::size_t kLineCapacity = 25000;  // bytes with the terminator; a longer line is read in pieces

struct EnvelopeKey {
  std::string_view key;  // with its "="
  void (*store)(Envelope& envelope, std::string_view value);
};

template <auto kField>
void store_text(Envelope& envelope, std::string_view value) {
  (envelope.*kField).cut(value);
}

void store_recipients(Envelope& envelope, std::string_view value) {
  envelope.recipients.assign(value);
}

void store_time_acquired(Envelope& envelope, std::string_view value) {
  envelope.time_acquired = leading_number(value);
}

void store_authentication_status(Envelope& envelope, std::string_view value) {
  envelope.authentication_status = leading_number(value);
  envelope.authentication_status_check = envelope.authentication_status;
}

constexpr EnvelopeKey kEnvelopeKeys[] = {
    {"Recipients=", store_recipients},
    {"Sender=", store_text<&Envelope::sender>},
    {"Server=", store_text<&Envelope::server>},
    {"ClientIP=", store_text<&Envelope::client_ip>},
    {"Account=", store_text<&Envelope::account>},
    {"User=", store_text<&Envelope::user>},
    {"Status=", store_text<&Envelope::status>},
    {"CommandType=", store_text<&Envelope::command_type>},
    {"Subject=", store_text<&Envelope::subject>},
    {"TimeAcquired=", store_time_acquired},
    {"AuthenticationStatus=", store_authentication_status},
};

void store_line(Envelope& envelope, std::string_view line) {
  for (const EnvelopeKey& entry : kEnvelopeKeys) {
    if (!line.starts_with(entry.key)) continue;
    entry.store(envelope, line.substr(entry.key.size()));
    return;
  }
}

// A value may come from outside (a recipient that an administrator typed, a sender). What follows a line end in it
// would become a key of its own, and what follows a NUL would be lost to every reader.
std::string_view first_line(std::string_view value) {
  return value.substr(0, value.find_first_of(std::string_view("\r\n\0", 3)));
}

void append_line(std::string& text, std::string_view key, std::string_view value) {
  text.append(key).append(first_line(value)).append("\n");
}

std::string command_file_text(const Envelope& envelope) {
  std::string text;
  append_line(text, "Recipients=", envelope.recipients);
  append_line(text, "Server=", envelope.server);
  append_line(text, "Sender=", envelope.sender);
  text.append(format_text_40("TimeAcquired=%d\n", envelope.time_acquired).view());
  append_line(text, "Status=", envelope.status);
  return text;
}

}  // namespace

void read_inbound_envelope(MessageContext& context) {
  context.envelope = Envelope();
  platform::InputFile file;
  if (!file.open(command_file_path(context, Queue::kInbound), platform::FileMode::kText)) return;
  while (const auto bytes = file.read_line(kLineCapacity)) {
    std::string_view line = until_nul(*bytes);
    if (line.empty()) continue;
    line.remove_suffix(1);  // the line feed; the MTA ends every line with one
    store_line(context.envelope, line);
  }
}

bool write_inbound_envelope(const MessageContext& context) {
  platform::FileReplacement file(command_file_path(context, Queue::kInbound),
                                 temporary_command_file_path(context, Queue::kInbound), platform::FileMode::kText);
  return file.is_open() && file.write(command_file_text(context.envelope)) && file.commit();
}

}  // namespace pv
