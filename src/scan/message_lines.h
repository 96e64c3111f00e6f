// The lines of a message file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/file.h"

namespace pv {

inline constexpr std::size_t kScanLine = 2048;  // bytes, one of them spare: longer lines come in pieces of 2047

// The header by which a message passes the filters untouched, and the one that does so for a postoffice, whose name
// follows.
inline constexpr std::string_view kFilteredMark = "X-PVFilter: ";
inline constexpr std::string_view kFilteredByPostofficeMark = "X-PV-POFilter: ";

// A line as it stands in the file, its line end included, and as far as words are searched in it.
struct MessageLine {
  std::string_view bytes;
  std::string_view text;  // ends before the first NUL

  // The character that decides about the line: 0 also for a NUL in the file.
  char first() const { return bytes.front(); }
  bool begins_with_blank() const { return first() == ' ' || first() == '\t'; }
  bool is_blank_line() const { return first() == '\r' || first() == '\n'; }
};

// Reads a message once, line by line, with one line of look-ahead: a folded header is known to have ended only when the
// line after it was read.
class MessageLines {
 public:
  // `moment` (borrowed) grows with every block that is read.
  explicit MessageLines(std::uint32_t& moment) : moment_(moment) {}

  [[nodiscard]] bool open(std::string_view path);

  // The next line, valid until the next call. nullopt for good at the end of the file or when a read fails.
  std::optional<MessageLine> next();

  // Makes next() give the line once more that it gave last.
  void push_back() { pushed_back_ = true; }

 private:
  std::uint32_t& moment_;
  platform::InputFile file_;
  std::optional<MessageLine> current_;
  bool pushed_back_ = false;
  bool ended_ = false;
};

}  // namespace pv
