// Paths on their way to the system.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pv::platform {

// The path with kPathSeparator for either separator. Empty when the system could only take it cut (a NUL byte in it, or
// longer than any path): the empty path names nothing, so whatever is done with it fails.
std::string system_form(std::string_view path);

// Whether the path, in the system's form, names nothing in any spelling, as far as that can be told by asking whether
// its directory has changed since it was last searched.
bool known_to_name_nothing(const std::string& form);

// What existing_path() returns, for a path in the system's form; on Windows nullopt, as no other spelling names it. For
// a path that could not be opened as spelt.
std::optional<std::string> path_in_another_case(const std::string& form);

// The last component; empty when the path ends in a separator. Either separator counts.
std::string_view last_component(std::string_view path);

// The last component as spelt, in the directory found as by existing_path. For new files whose name is ours: it saves
// creatable_path's search of the whole directory.
std::string path_in_existing_directory(std::string_view path);

}  // namespace pv::platform
