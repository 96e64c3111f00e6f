// What the systems do differently when a file is replaced.
#pragma once

#include <string>
#include <string_view>

#include "platform/descriptor.h"
#include "platform/file.h"

namespace pv::platform {

struct ReplacementPaths {
  std::string target;
  std::string temporary;
};

// Where the file really lies and where its new content is written, both in the system's form.
ReplacementPaths replacement_paths(std::string_view target, std::string_view temporary, TargetName name);

// A new temporary file with the access rights of the target; a left-over of its name is removed first. Not open when
// the target is there and no regular file.
Descriptor create_temporary(const ReplacementPaths& paths);

[[nodiscard]] bool put_in_place(const ReplacementPaths& paths);

// Leaves the last error alone.
void remove_temporary(const std::string& path);

}  // namespace pv::platform
