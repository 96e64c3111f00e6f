// Removing and renaming files.
#include <unistd.h>

#include <cstdio>

#include "platform/file.h"
#include "platform/file_faults.h"
#include "platform/path_parts.h"
#include "platform/paths.h"

namespace pv::platform {
namespace {

// As the system will be asked for it: spelt as given when nothing is found, so that the error is the system's own, and
// a link that leads nowhere can be removed.
std::string found_or_as_spelt(std::string_view path) {
  auto found = existing_path(path);
  return found ? *std::move(found) : system_form(path);
}

}  // namespace

bool remove_file(std::string_view path) {
  const std::string found = found_or_as_spelt(path);
  return !fails_for_test(FileOperation::kRemove) && ::unlink(found.c_str()) == 0;
}

bool rename_file(std::string_view from, std::string_view to) {
  const std::string old_name = found_or_as_spelt(from);
  std::string new_name = creatable_path(to);
  // The file itself under its new spelling.
  if (new_name == old_name) new_name = path_in_existing_directory(to);
  return !fails_for_test(FileOperation::kRename) && std::rename(old_name.c_str(), new_name.c_str()) == 0;
}

}  // namespace pv::platform
