// The writing half of files: a buffer in front of a descriptor, and errors that stick.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "platform/descriptor.h"
#include "platform/file.h"

namespace pv::platform {

// After the first failure every call fails and leaves the last error as it was at that failure. What is not flushed
// when the object goes away is lost.
class BufferedOutput {
 public:
  BufferedOutput(Descriptor file, FileMode mode) : file_(std::move(file)), text_(mode == FileMode::kText) {}

  [[nodiscard]] bool write(std::string_view bytes);
  [[nodiscard]] bool flush();
  // The descriptor is released in any case.
  [[nodiscard]] bool close();

 private:
  bool refused();
  bool note(bool succeeded);
  bool empty_buffer();
  bool append(std::string_view bytes);
  bool append_text(std::string_view bytes);

  Descriptor file_;
  bool text_;
  int error_ = 0;  // of the first failure
  std::size_t used_ = 0;
  std::array<char, 32768> buffer_;
};

}  // namespace pv::platform
