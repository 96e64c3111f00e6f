// What every fuzz target has. A target is one source with LLVMFuzzerTestOneInput; it is linked with libFuzzer, or with
// replay_main.cpp, which runs the inputs of its corpus.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "queue/message_context.h"
#include "support/server_tree.h"

// For libFuzzer and replay_main.cpp, before the first input: what the agent prints goes nowhere.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace pv::fuzz {

inline constexpr std::size_t kLargestInput = 65536;  // bytes; a larger input is not run

// Ends the process with `what` on standard error.
[[noreturn]] void fail(const char* what);

// What must hold for every input.
inline void require(bool held, const char* what) {
  if (!held) fail(what);
}

// The input as text. Empty for an input that is too large.
std::string_view input_text(const std::uint8_t* data, std::size_t size);

// Takes the part before the first `separator` off the input; all of it when there is none.
std::string_view take_until(char separator, std::string_view& input);

// The files of this process's inputs: made at first use, removed at exit.
test::ServerTree& server();

inline constexpr char kMessageId[] = "F.MAI";

// The message kMessageId of the tree's SMTP queue, with the tree's directories and a sender.
MessageContext queued_message();

}  // namespace pv::fuzz
