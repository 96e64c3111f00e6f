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
  const std::uint32_t blocks_before = file_.blocks_read();
  const std::optional<std::string_view> bytes = file_.read_line(kScanLine);
  moment_ += file_.blocks_read() - blocks_before;
  ended_ = !bytes;
  if (ended_) return std::nullopt;
  const MessageLine line{*bytes, until_nul(*bytes)};
  current_ = line;
  return line;
}

}  // namespace pv
