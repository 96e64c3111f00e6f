// What tells one state of a file from another.
#pragma once

#include <cstdint>
#include <string_view>

namespace pv::platform {

// Two states of the file are the same when all of this is. What a system does not tell about a file that is not open
// is 0 there.
struct FileIdentity {
  bool exists = false;
  std::uint64_t volume = 0;
  std::uint64_t file = 0;  // tells the files of a volume apart
  std::uint64_t size = 0;
  std::int64_t modified = 0;  // in the system's ticks
  std::int64_t changed = 0;   // set by the system alone: an edit that keeps the size and puts back `modified` shows too

  bool operator==(const FileIdentity&) const = default;
};

// The identity of the file that `path` names in any letter case (platform/paths.h); whether it may be opened, and
// whether it is a regular file, is not asked. A file as spelt costs one question to the system.
FileIdentity file_identity(std::string_view path);

// Whether the clock of the file system has moved on since the last change, so that any later change changes the
// identity. Of a file just changed it has not, and what is read from it may be changed without a trace.
bool is_settled(const FileIdentity& identity);

}  // namespace pv::platform
