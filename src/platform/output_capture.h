// Catches what the process, loaded libraries included, writes to standard output.
#pragma once

#include <memory>
#include <string>

namespace pv::platform {

// From its construction to take(), everything that goes to standard output is kept instead of shown. One at a time in a
// process.
class OutputCapture {
 public:
  OutputCapture();
  ~OutputCapture();  // restores standard output
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

  // Restores standard output and gives what was caught. A second call gives the empty text.
  std::string take();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pv::platform
