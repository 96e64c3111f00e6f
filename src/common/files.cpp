#include "common/files.h"

#include <algorithm>
#include <limits>
#include <optional>

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
  BoundedText<33> text;
  text.cut(platform::guid_digits(platform::new_guid()));
  return text;
}

BoundedText<37> new_message_file_name() {
  BoundedText<37> name;
  name.cut(guid_hex());
  name.append_cut(".MAI");
  return name;
}

}  // namespace pv
