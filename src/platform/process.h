// Starting a program and waiting for it.
#pragma once

#include <chrono>
#include <string_view>

namespace pv::platform {

// How a program that was asked for fared.
struct ProgramRun {
  bool started = false;
  int error_code = 0;      // when it was not started: 2 not found, 5 not permitted, else the system's code
  bool timed_out = false;  // it was still running at the limit and has been ended, with everything it started
};

// Starts the program that `command_line` names, with the arguments that follow it, and waits until it ends, at most for
// `limit`. No shell is involved: blanks separate the words, double quotes keep blanks together, \" is a quote; a name
// without a directory is looked for along the system's search path. The program writes to the standard output and error
// of this process, has no file that the agent opened, and is no child of this process any more when this returns. What
// it leaves running when it ends in time goes on. Any number of threads at once.
//
// It reads nothing and has no other open file of the host either; on Windows it gets the host's standard input and the
// handles that the host lets programs inherit.
ProgramRun run_program(std::string_view command_line, std::chrono::milliseconds limit);

}  // namespace pv::platform
