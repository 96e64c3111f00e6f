// Moving a file to a name that may be taken.
#pragma once

#include <string>

namespace pv::platform {

// Within one volume, in one step, also while somebody who shares it has the file of that name open. Paths are in the
// system's form.
[[nodiscard]] bool move_file_over(const std::string& from, const std::string& to);

}  // namespace pv::platform
