// Failure: the system's plain rename either happens or not. Only when it refuses because somebody has the old file open
// does the second way follow, which moves the old file aside first. If that goes wrong in the middle, the old file is
// moved back. Not handled there: a kill between its two steps leaves the old file under its name aside,
// "_<name>.<32 hexadecimal digits>.tmp".
#include "platform/windows/move_file.h"

#include <windows.h>

#include "platform/file.h"
#include "platform/last_error.h"

namespace pv::platform {
namespace {

bool replace_open_file(const std::string& from, const std::string& to) {
  constexpr DWORD kFlags = REPLACEFILE_IGNORE_MERGE_ERRORS;
  const std::string aside = temporary_beside(to);
  const bool replaced = ::ReplaceFileA(to.c_str(), from.c_str(), aside.c_str(), kFlags, nullptr, nullptr) != 0;
  const KeptSystemError kept;
  if (replaced) {
    ::DeleteFileA(aside.c_str());  // it goes when its readers close it
  } else if (::GetFileAttributesA(to.c_str()) == INVALID_FILE_ATTRIBUTES) {
    ::MoveFileExA(aside.c_str(), to.c_str(), 0);
  }
  return replaced;
}

bool may_be_open_elsewhere(DWORD error) {
  return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION;
}

bool is_ordinary_file(const std::string& path) {
  const DWORD attributes = ::GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0;
}

}  // namespace

bool move_file_over(const std::string& from, const std::string& to) {
  if (::MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) return true;
  const DWORD error = ::GetLastError();
  if (may_be_open_elsewhere(error) && is_ordinary_file(to) && replace_open_file(from, to)) return true;
  ::SetLastError(error);
  return false;
}

}  // namespace pv::platform
