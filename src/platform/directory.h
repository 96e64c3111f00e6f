// Directories: searching them by name or wildcard, and creating them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace pv::platform {

struct DirectoryEntry {
  std::string name;  // as stored in the directory
  bool is_directory = false;
  std::uint64_t size_bytes = 0;  // 0 for a directory
};

// The first entry, in the directory's own order, that a search for `path` finds. The last component may hold '*' (any
// characters, none included) and '?' (one character) and is compared without regard to ASCII case; "*.*" finds every
// name. A path without wildcards finds that entry, a directory too. nullopt: none, an empty path, or a path that ends
// in a separator. Links are followed.
std::optional<DirectoryEntry> find_first_entry(std::string_view path);

// Calls `visit` for every entry of a directory but "." and "..", in no order, until it answers false. False when the
// directory cannot be read.
bool for_each_entry(std::string_view directory, const std::function<bool(const DirectoryEntry&)>& visit);

// Creates one directory; its parent must exist. False when that fails, and also when it exists already.
[[nodiscard]] bool create_directory(std::string_view path);

}  // namespace pv::platform
