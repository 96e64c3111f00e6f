#include "scan/message_lines.h"

#include "common/bounded_text.h"

namespace pv {

bool MessageLines::open(std::string_view path) {
  return file_.open(path, platform::FileMode::kBinary);
}

std::optional<MessageLine> MessageLines::next() {
  if (ended_) return std::nullopt;
  if (pushed_back_) {
    pushed_back_ = false;
    return current_;
  }
  const std::optional<std::string_view> bytes = file_.read_line(kScanLine);
  ended_ = !bytes;
  if (ended_) return std::nullopt;
  current_ = MessageLine{*bytes, until_nul(*bytes)};
  return current_;
}

}  // namespace pv
