#include "actions/execute_application.h"

#include <atomic>
#include <chrono>

#include "common/dates.h"
#include "common/formats.h"
#include "common/output.h"
#include "common/text_search.h"
#include "platform/process.h"

namespace pv {
namespace {

constinit std::atomic<std::int32_t> limit_ms = kApplicationLimitMs;

using RawCommand = BoundedText<2048>;

RawCommand raw_command(std::string_view program, std::string_view arguments) {
  return format_text_2048("%.*s %.*s", static_cast<int>(program.size()), program.data(),
                          static_cast<int>(arguments.size()), arguments.data());
}

}  // namespace

std::int32_t ExpandCommandTokens(const MessageContext& message, std::string_view command_line,
                                 BoundedText<kExpandedCommand>& output) {
  copy_bounded(output, command_line);
  const BoundedText<40> time = rfc822_date_now();
  // A value that does not fit leaves its token in place, and the others are still tried.
  static_cast<void>(replace_all(output, "[ID]", message.message_id));
  static_cast<void>(replace_all(output, "[CONNECTOR]", message.connector));
  static_cast<void>(replace_all(output, "[TIME]", time));
  return 1;
}

bool ExecuteApplication(const MessageContext& message, std::string_view program, std::string_view arguments) {
  const RawCommand raw = raw_command(program, arguments);
  print("Filter Event Raw Command:%s\n", raw.c_str());
  BoundedText<kExpandedCommand> command;
  ExpandCommandTokens(message, raw, command);
  print("Filter Event Command:%s\n", command.c_str());
  flush_output();  // the program prints to the same place
  const platform::ProgramRun run = platform::run_program(command, std::chrono::milliseconds(limit_ms.load()));
  if (run.started) return true;
  print("Pickup Event CreateProcess failed Error:%d (%s)\n", run.error_code, command.c_str());
  return false;
}

void set_execute_application_limit_for_test(std::int32_t limit) {
  limit_ms = limit == 0 ? kApplicationLimitMs : limit;
}

}  // namespace pv
