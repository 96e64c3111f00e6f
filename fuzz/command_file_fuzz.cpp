// The command file: what is read stands in it, and what is written reads back.
#include <initializer_list>
#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "queue/envelope_file.h"

namespace pv::fuzz {
namespace {

const std::string kCommandFile = std::string("queues/SMTP/Inbound/") + kMessageId;

// A text field holds the beginning of what one line of the input says.
void require_found(std::string_view input, std::string_view key, std::string_view value) {
  if (value.empty()) return;
  require(input.find(std::string(key).append(value)) != std::string_view::npos, "a field stands in the command file");
}

void require_fields_found(std::string_view input, const Envelope& envelope) {
  require_found(input, "Recipients=", envelope.recipients);
  require_found(input, "Sender=", envelope.sender);
  require_found(input, "Server=", envelope.server);
  require_found(input, "ClientIP=", envelope.client_ip);
  require_found(input, "Account=", envelope.account);
  require_found(input, "User=", envelope.user);
  require_found(input, "Status=", envelope.status);
  require_found(input, "CommandType=", envelope.command_type);
  require_found(input, "Subject=", envelope.subject);
  require(envelope.authentication_status == envelope.authentication_status_check, "both numbers are the same");
}

std::string_view first_line(std::string_view value) {
  return value.substr(0, value.find_first_of("\r\n"));
}

// The five fields that are written come back up to their first line end, and no other comes with them.
void require_read_back(const Envelope& written, const Envelope& read) {
  require(read.recipients == first_line(written.recipients), "recipients read back");
  require(read.sender.view() == first_line(written.sender), "sender reads back");
  require(read.server.view() == first_line(written.server), "server reads back");
  require(read.status.view() == first_line(written.status), "status reads back");
  require(read.time_acquired == written.time_acquired, "time acquired reads back");
  for (const std::string_view other :
       {read.client_ip.view(), read.account.view(), read.user.view(), read.command_type.view(), read.subject.view()}) {
    require(other.empty(), "no other field is written");
  }
}

void run(std::string_view input) {
  server().write(kCommandFile, input);
  MessageContext message = queued_message();
  read_inbound_envelope(message);
  require_fields_found(input, message.envelope);

  const Envelope written = message.envelope;
  require(write_inbound_envelope(message), "the envelope can be written");
  read_inbound_envelope(message);
  require_read_back(written, message.envelope);

  const std::string bytes = server().read(kCommandFile);
  require(write_inbound_envelope(message), "the envelope can be written again");
  require(server().read(kCommandFile) == bytes, "what was read back is written the same");
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
