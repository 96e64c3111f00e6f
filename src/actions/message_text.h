// A message file read as text, a line at a time.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "platform/file.h"

namespace pv {

class MessageText {
 public:
  [[nodiscard]] bool open(std::string_view path) { return file_.open(path, platform::FileMode::kText); }

  // The next line with its line end, NUL bytes included; nullopt at the end of the file and when a read fails. Lines of
  // more than 2047 bytes come in pieces. Valid until the next call.
  std::optional<std::string_view> next() {
    begins_line_ = ended_line_;
    const std::optional<std::string_view> line = file_.read_line(kLine);
    ended_line_ = line && line->ends_with('\n');
    return line;
  }
  // Whether the line that next() gave last stands at the beginning of one, and is no later piece of a long one: only
  // such a line can be a header, an empty line or a boundary.
  bool begins_line() const { return begins_line_; }
  bool failed() const { return file_.failed(); }
  void close() { file_ = platform::InputFile(); }

 private:
  static constexpr std::size_t kLine = 2048;  // bytes, one spare
  platform::InputFile file_;
  bool begins_line_ = true;
  bool ended_line_ = true;
};

inline bool ends_header_block(std::string_view line) {
  return line.starts_with('\r') || line.starts_with('\n');
}

}  // namespace pv
