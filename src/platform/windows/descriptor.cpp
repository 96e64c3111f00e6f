#include "platform/windows/descriptor.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>

#include "platform/file_faults.h"
#include "platform/last_error.h"

namespace pv::platform {
namespace {

constexpr int kLastStandardNumber = 2;
// Others may read, write, rename and delete what we have open, as they may elsewhere.
constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// Without the right to write elsewhere the system puts every write at the end, also beside other processes.
constexpr DWORD kAppendOnly = (FILE_GENERIC_WRITE & ~static_cast<DWORD>(FILE_WRITE_DATA)) | FILE_READ_ATTRIBUTES;
constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;  // bytes; the system counts in 32 bits

HANDLE handle_of(int number) {
  return reinterpret_cast<HANDLE>(::_get_osfhandle(number));
}

Descriptor adopted(HANDLE handle) {
  if (handle == INVALID_HANDLE_VALUE) return {};
  const int number = ::_open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY | _O_NOINHERIT);
  if (number >= 0) return Descriptor(number);
  ::CloseHandle(handle);
  ::SetLastError(ERROR_TOO_MANY_OPEN_FILES);
  return {};
}

Descriptor opened(const std::string& path, DWORD access, DWORD creation, void* security = nullptr) {
  if (fails_for_test(FileOperation::kOpen)) return {};
  SECURITY_ATTRIBUTES attributes{sizeof attributes, security, FALSE};
  return adopted(::CreateFileA(path.c_str(), access, kShared, &attributes, creation, FILE_ATTRIBUTE_NORMAL, nullptr));
}

DWORD kind_of(const Descriptor& file) {
  return ::GetFileType(handle_of(file.number()));
}

Descriptor refused() {
  ::SetLastError(ERROR_INVALID_PARAMETER);
  return {};
}

DWORD creation_of(Disposition disposition) {
  switch (disposition) {
    case Disposition::kReplace:
      return CREATE_ALWAYS;
    case Disposition::kAppend:
      return OPEN_ALWAYS;
    case Disposition::kCreateNew:
      return CREATE_NEW;
  }
  return CREATE_NEW;
}

DWORD at_most(std::size_t bytes) {
  return static_cast<DWORD>(std::min(bytes, kMostAtOnce));
}

}  // namespace

Descriptor::Descriptor(int number) : number_(number) {
  if (number < 0 || number > kLastStandardNumber) return;
  Descriptor higher = duplicate(number);
  number_ = higher.release();
  const KeptSystemError kept;
  ::_close(number);
}

void Descriptor::reset() {
  const KeptSystemError kept;
  if (is_open()) ::_close(release());
}

Descriptor duplicate(int number) {
  Descriptor copy(::_dup(number));
  if (copy.is_open()) ::SetHandleInformation(handle_of(copy.number()), HANDLE_FLAG_INHERIT, 0);
  return copy;
}

// Devices have names in every directory ("NUL", "COM1"), and a pipe has a name too.
Descriptor open_regular_file(const std::string& path, std::uint64_t* size) {
  Descriptor file = opened(path, GENERIC_READ, OPEN_EXISTING);
  if (file.is_open() && kind_of(file) != FILE_TYPE_DISK) return refused();
  if (file.is_open() && size != nullptr) *size = file_size(file).value_or(0);
  return file;
}

Descriptor open_output(const std::string& path, Disposition disposition) {
  const DWORD access = disposition == Disposition::kAppend ? kAppendOnly : GENERIC_WRITE;
  Descriptor file = opened(path, access, creation_of(disposition));
  if (!file.is_open()) return file;
  const DWORD kind = kind_of(file);
  return kind == FILE_TYPE_DISK || kind == FILE_TYPE_CHAR ? std::move(file) : refused();
}

Descriptor create_with_security(const std::string& path, void* security) {
  return opened(path, GENERIC_WRITE, CREATE_NEW, security);
}

Descriptor create_short_lived(const std::string& path) {
  return adopted(::CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, kShared, nullptr, CREATE_ALWAYS,
                               FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
}

std::optional<std::uint64_t> file_size(const Descriptor& file) {
  LARGE_INTEGER size;
  if (::GetFileSizeEx(handle_of(file.number()), &size) == 0) return std::nullopt;
  return static_cast<std::uint64_t>(size.QuadPart);
}

std::ptrdiff_t read_block(const Descriptor& file, std::span<char> block) {
  if (fails_for_test(FileOperation::kRead)) return -1;
  DWORD got = 0;
  if (::ReadFile(handle_of(file.number()), block.data(), at_most(block.size()), &got, nullptr) == 0) return -1;
  return static_cast<std::ptrdiff_t>(got);
}

bool write_all(const Descriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (::WriteFile(handle_of(file.number()), bytes.data(), at_most(bytes.size()), &written, nullptr) == 0)
      return false;
    if (written == 0) {
      ::SetLastError(ERROR_DISK_FULL);
      return false;
    }
    bytes.remove_prefix(written);
  }
  return true;
}

bool close_checked(Descriptor& file) {
  return ::_close(file.release()) == 0;
}

}  // namespace pv::platform
