#include "actions/filter_mark.h"

#include <array>
#include <cstddef>

#include "actions/message_text.h"
#include "common/text_search.h"
#include "platform/file.h"
#include "queue/queue_paths.h"
#include "scan/message_lines.h"

namespace pv {

std::optional<bool> scan_sees_mark(std::string_view path) {
  platform::InputFile in;
  if (!in.open(path, platform::FileMode::kBinary)) return std::nullopt;
  while (const std::optional<std::string_view> line = in.read_line(kScanLine)) {
    if (ends_header_block(*line)) return false;
    if (starts_with_nocase(*line, kFilteredMark)) return true;
  }
  return in.failed() ? std::nullopt : std::optional(false);
}

bool put_before(std::string_view lines, std::string_view from, const MessageContext& message) {
  platform::InputFile in;
  if (!in.open(from, platform::FileMode::kBinary)) return false;
  platform::FileReplacement out(message_file_path(message, Queue::kInbound),
                                temporary_message_file_path(message, Queue::kInbound), platform::FileMode::kBinary,
                                platform::TargetName::kAsSpelt);
  if (!out.is_open() || !out.write(lines)) return false;
  std::array<char, 16384> block;
  while (const std::size_t size = in.read(block)) {
    if (!out.write({block.data(), size})) return false;
  }
  if (in.failed()) return false;
  in = platform::InputFile();  // an open file cannot be replaced on every system
  return out.commit();
}

}  // namespace pv
