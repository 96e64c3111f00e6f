// The form of paths on this system, and finding files whose names are spelt in another letter case.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace pv::platform {

// What stands between the components of a path that the agent forms: '/' here, '\' on Windows.
extern const char kPathSeparator;

// The components joined with kPathSeparator, empty ones included: join_path({"/q", "SMTP", "A"}) is "/q/SMTP/A".
// Nothing is cleaned up: a first component that ends in a separator gives a doubled one, which the system accepts.
std::string join_path(std::initializer_list<std::string_view> components);

// On Windows the system itself looks names up without regard to case, so that a path comes back as spelt, with '\' for
// '/', from all of the following.

// The path by which an existing file or directory can be opened: `path` itself when it exists as spelt ('\' counts as a
// separator), else the path found by looking each component up without regard to ASCII case, an exact match first.
// nullopt when there is no such entry.
std::optional<std::string> existing_path(std::string_view path);

// The path under which a file is created: the existing file that `path` names in any letter case, else the last
// component as spelt in the directory found as by existing_path. When that directory does not exist, `path` with
// this system's separators, so that creating it fails with the system's own error.
std::string creatable_path(std::string_view path);

}  // namespace pv::platform
