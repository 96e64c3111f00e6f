// One key of the registry, opened in the view of a 32-bit process.
#pragma once

#include <windows.h>

#include <string_view>

namespace pv::platform {

// The key below which everything lies that the agent reads; a chosen registry key stands in its place.
inline constexpr std::string_view kServerKey = R"(SOFTWARE\Post Vane\Post Vane)";

class RegistryKey {
 public:
  enum class Access {
    kRead,
    kWrite,  // makes the key when it is missing
  };

  // `key_path` as in platform/settings_store.h. Not open when there is no such key, or it is not permitted.
  RegistryKey(std::string_view key_path, Access access);
  ~RegistryKey() {
    if (key_ != nullptr) ::RegCloseKey(key_);
  }
  RegistryKey(const RegistryKey&) = delete;
  RegistryKey& operator=(const RegistryKey&) = delete;

  bool is_open() const { return key_ != nullptr; }
  HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

}  // namespace pv::platform
