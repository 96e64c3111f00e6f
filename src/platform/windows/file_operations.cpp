// Removing and renaming files.
#include <windows.h>

#include "platform/file.h"
#include "platform/file_faults.h"
#include "platform/path_parts.h"
#include "platform/windows/move_file.h"

namespace pv::platform {

bool remove_file(std::string_view path) {
  return !fails_for_test(FileOperation::kRemove) && ::DeleteFileA(system_form(path).c_str()) != 0;
}

bool rename_file(std::string_view from, std::string_view to) {
  return !fails_for_test(FileOperation::kRename) && move_file_over(system_form(from), system_form(to));
}

}  // namespace pv::platform
