#include "platform/com.h"

#include <objbase.h>
#include <windows.h>

#include <array>
#include <cstdint>
#include <cstdio>

namespace pv::platform {
namespace {

constinit thread_local int initialisations = 0;
// One bit for each of them, the innermost lowest: whether the system took it. On a thread that the program put into an
// apartment of its own it does not, and giving back what was not taken would take that thread's COM away.
constinit thread_local std::uint64_t taken = 0;

}  // namespace

void initialise_com() {
  const bool done = SUCCEEDED(::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
  taken = (taken << 1) | (done ? 1U : 0U);
  ++initialisations;
}

void uninitialise_com() {
  if ((taken & 1U) != 0) ::CoUninitialize();
  taken >>= 1;
  --initialisations;
}

int com_initialisations_of_thread() {
  return initialisations;
}

std::string com_code_text(std::int32_t code) {
  constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  std::array<char, 1024> buffer{};
  const DWORD length = ::FormatMessageA(kFlags, nullptr, static_cast<DWORD>(code), 0, buffer.data(),
                                        static_cast<DWORD>(buffer.size()), nullptr);
  const std::string text(buffer.data(), length);
  if (const std::size_t end = text.find_last_not_of(" \r\n") + 1; end > 0) return text.substr(0, end);
  std::snprintf(buffer.data(), buffer.size(), "Unknown error 0x%08X", static_cast<unsigned>(code));
  return buffer.data();
}

}  // namespace pv::platform
