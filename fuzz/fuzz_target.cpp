#include "fuzz_target.h"

#include <cstdio>
#include <cstdlib>

#include "common/agent_settings.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  pv::fuzz::require(std::freopen("/dev/null", "w", stdout) != nullptr, "standard output can be sent away");
  return 0;
}

namespace pv::fuzz {

void fail(const char* what) {
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

std::string_view input_text(const std::uint8_t* data, std::size_t size) {
  if (size == 0 || size > kLargestInput) return {};
  return {reinterpret_cast<const char*>(data), size};
}

std::string_view take_until(char separator, std::string_view& input) {
  const std::size_t end = input.find(separator);
  const std::string_view part = input.substr(0, end);
  input.remove_prefix(end == std::string_view::npos ? input.size() : end + 1);
  return part;
}

test::ServerTree& server() {
  static test::ServerTree tree;
  return tree;
}

MessageContext queued_message() {
  static_cast<void>(server());  // the directories are read from its settings
  MessageContext message;
  message.directories = reread_directories();
  message.connector.cut("SMTP");
  message.message_id.cut(kMessageId);
  message.envelope.sender.cut("[SMTP:ann@example.org]");
  return message;
}

}  // namespace pv::fuzz
