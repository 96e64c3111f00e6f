#include "support/library_path.h"

#include <windows.h>

#include <array>

namespace example {

std::string library_path() {
  constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  HMODULE library = nullptr;
  if (::GetModuleHandleExA(kFlags, reinterpret_cast<const char*>(&library_path), &library) == 0) return {};
  std::array<char, MAX_PATH> path{};
  const DWORD length = ::GetModuleFileNameA(library, path.data(), static_cast<DWORD>(path.size()));
  return length < path.size() ? std::string(path.data(), length) : std::string();
}

}  // namespace example
