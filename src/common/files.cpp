#include "common/files.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "common/formats.h"
#include "platform/directory.h"
#include "platform/guid.h"

namespace pv {

bool file_exists(std::string_view path) {
  return platform::find_first_entry(path).has_value();
}

std::int32_t file_size(std::string_view path) {
  const std::optional<platform::DirectoryEntry> entry = platform::find_first_entry(path);
  if (!entry) return 0;
  constexpr std::uint64_t kLargest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(entry->size_bytes, kLargest));
}

BoundedText<33> guid_hex() {
  const platform::Guid guid = platform::new_guid();
  BoundedText<33> text;
  text.cut(format_text_40("%08X%04X%04X", guid.data1, unsigned{guid.data2}, unsigned{guid.data3}));
  for (const std::uint8_t byte : guid.data4) text.append_cut(format_text_40("%02X", unsigned{byte}));
  return text;
}

BoundedText<37> new_message_file_name() {
  BoundedText<37> name;
  name.cut(guid_hex());
  name.append_cut(".MAI");
  return name;
}

}  // namespace pv
