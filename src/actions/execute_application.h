// Starts a program for a message and waits for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/bounded_text.h"
#include "queue/message_context.h"

namespace pv {

inline constexpr std::size_t kExpandedCommand = 2047;        // bytes, terminator included; a longer one is cut
inline constexpr std::int32_t kApplicationLimitMs = 600000;  // how long a program may run, milliseconds

// Starts "program arguments" and waits until it ends; after ten minutes it is ended, together with what it started.
// True when it was started, whatever became of it. In both texts "[ID]", "[CONNECTOR]" and "[TIME]" stand for the
// message's identifier and connector and the time. No shell is involved (platform/process.h). Prints the command before
// and after that, and why a program could not be started. Blocks the calling thread; any number of threads at once.
[[nodiscard]] bool ExecuteApplication(const MessageContext& message, std::string_view program,
                                      std::string_view arguments);

// The command line with its tokens replaced. A token whose value would bring the text beyond its capacity stays in
// place, everywhere it occurs. Always 1.
std::int32_t ExpandCommandTokens(const MessageContext& message, std::string_view command_line,
                                 BoundedText<kExpandedCommand>& output);

// Test seam: programs may run for `limit_ms` milliseconds instead; 0 restores the ten minutes.
void set_execute_application_limit_for_test(std::int32_t limit_ms);

}  // namespace pv
