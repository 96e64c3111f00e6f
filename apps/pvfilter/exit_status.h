// Exit statuses, with the numbers of sysexits.h.
#pragma once

#include <stdexcept>
#include <string>

namespace pvfilter {

enum ExitStatus : int {
  kOk = 0,
  kUsage = 64,        // the command line is wrong
  kDataError = 65,    // `check` found mistakes
  kNoInput = 66,      // an input file, a server tree or a value is not there
  kUnavailable = 69,  // the agent library cannot be loaded
  kSoftware = 70,     // a fault of this program
  kCannotCreate = 73,
  kConfig = 78,  // something in the server's settings
};

// Ends a command; main prints it as "pvfilter: <what>" on standard error.
class CommandError : public std::runtime_error {
 public:
  CommandError(ExitStatus status, const std::string& what) : std::runtime_error(what), status_(status) {}
  ExitStatus status() const { return status_; }

 private:
  ExitStatus status_;
};

}  // namespace pvfilter
