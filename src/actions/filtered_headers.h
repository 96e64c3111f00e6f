// The header lines of the filtered message, as notifications show them.
#pragma once

#include <string>
#include <utility>

#include "actions/notification_file.h"
#include "platform/file.h"

namespace pv {

class FilteredHeaders {
 public:
  explicit FilteredHeaders(std::string path) : path_(std::move(path)) {}

  // Opens the message unless it is open. False when it cannot be opened.
  [[nodiscard]] bool open();
  void close() { file_ = platform::InputFile(); }

  // Copies the lines before the first one that begins with a CR or LF (all lines when there is none), NUL bytes
  // included, and closes the message, so that the next copy begins at its start again. False when the message cannot be
  // opened or read, or writing failed.
  [[nodiscard]] bool copy_to(NotificationFile& out);

 private:
  const std::string path_;
  platform::InputFile file_;
};

}  // namespace pv
