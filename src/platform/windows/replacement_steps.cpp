#include "platform/replacement_steps.h"

#include <windows.h>

#include <vector>

#include "platform/ascii_case.h"
#include "platform/file_faults.h"
#include "platform/last_error.h"
#include "platform/path_parts.h"
#include "platform/windows/descriptor.h"
#include "platform/windows/move_file.h"

namespace pv::platform {
namespace {

// Who may do what with the file; empty when it is not there or the system does not tell.
std::vector<char> access_rights(const std::string& path) {
  const KeptSystemError kept;
  DWORD size = 0;
  ::GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<char> rights(size);
  if (::GetFileSecurityA(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size) == 0) rights.clear();
  return rights;
}

// A left-over may belong to somebody else, with other rights: the temporary file is always a new one.
Descriptor create_anew(const std::string& path, void* security) {
  Descriptor file = create_with_security(path, security);
  if (file.is_open() || last_system_error() != kExistsError) return file;
  if (fails_for_test(FileOperation::kRemove) || ::DeleteFileA(path.c_str()) == 0) return {};
  return create_with_security(path, security);
}

bool is_directory(const std::string& path) {
  const DWORD attributes = ::GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

ReplacementPaths replacement_paths(std::string_view target, std::string_view temporary, TargetName) {
  return {system_form(target), system_form(temporary)};
}

Descriptor create_temporary(const ReplacementPaths& paths) {
  if (is_directory(paths.target) || equal_nocase(paths.target, paths.temporary)) {
    ::SetLastError(ERROR_INVALID_PARAMETER);
    return {};
  }
  std::vector<char> rights = access_rights(paths.target);
  return create_anew(paths.temporary, rights.empty() ? nullptr : rights.data());
}

bool put_in_place(const ReplacementPaths& paths) {
  return !fails_for_test(FileOperation::kRename) && move_file_over(paths.temporary, paths.target);
}

void remove_temporary(const std::string& path) {
  const KeptSystemError kept;
  if (!fails_for_test(FileOperation::kRemove)) ::DeleteFileA(path.c_str());
}

}  // namespace pv::platform
