#include "platform/windows/registry.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "platform/windows/registry_key.h"

namespace pv::platform {
namespace {

constexpr std::size_t kLongestName = 255;  // bytes of a value's name

bool is_text(DWORD type) {
  return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

struct Value {
  DWORD type = REG_NONE;
  std::size_t size = 0;  // bytes
};

// nullopt when the value is missing or does not fit into `out`, whose bytes are then anything.
std::optional<Value> read_value(std::string_view key_path, std::string_view name, std::span<char> out) {
  if (name.find('\0') != std::string_view::npos) return std::nullopt;
  const RegistryKey key(key_path, RegistryKey::Access::kRead);
  if (!key.is_open()) return std::nullopt;
  Value value;
  auto size = static_cast<DWORD>(out.size());
  const LSTATUS status = ::RegQueryValueExA(key.get(), std::string(name).c_str(), nullptr, &value.type,
                                            reinterpret_cast<BYTE*>(out.data()), &size);
  if (status != ERROR_SUCCESS || size > out.size()) return std::nullopt;
  value.size = size;
  return value;
}

bool write_value(std::string_view key_path, std::string_view name, DWORD type, const void* bytes, std::size_t size) {
  if (name.find('\0') != std::string_view::npos) return false;
  const RegistryKey key(key_path, RegistryKey::Access::kWrite);
  return key.is_open() && ::RegSetValueExA(key.get(), std::string(name).c_str(), 0, type,
                                           static_cast<const BYTE*>(bytes), static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

}  // namespace

std::optional<std::size_t> read_text_in_registry(std::string_view key_path, std::string_view name,
                                                 std::span<char> out) {
  std::string bytes(out.size(), '\0');
  const std::optional<Value> value = read_value(key_path, name, bytes);
  if (!value || !is_text(value->type)) return std::nullopt;
  const std::size_t length = std::min(bytes.find('\0'), value->size);
  if (length >= out.size()) return std::nullopt;
  std::copy_n(bytes.begin(), length, out.begin());
  return length;
}

std::optional<std::uint32_t> read_number_in_registry(std::string_view key_path, std::string_view name) {
  std::array<char, sizeof(std::uint32_t)> bytes{};
  const std::optional<Value> value = read_value(key_path, name, bytes);
  if (!value || is_text(value->type) || value->size != bytes.size()) return std::nullopt;
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data(), sizeof number);
  return number;
}

bool for_each_name_in_registry(std::string_view key_path, const std::function<bool(std::string_view name)>& visit) {
  const RegistryKey key(key_path, RegistryKey::Access::kRead);
  if (!key.is_open()) return false;
  std::array<char, kLongestName + 1> name{};
  for (DWORD index = 0;; ++index) {
    auto size = static_cast<DWORD>(name.size());
    const LSTATUS status = ::RegEnumValueA(key.get(), index, name.data(), &size, nullptr, nullptr, nullptr, nullptr);
    if (status == ERROR_MORE_DATA) continue;  // too long
    if (status != ERROR_SUCCESS || !visit({name.data(), size})) return true;
  }
}

bool write_number_in_registry(std::string_view key_path, std::string_view name, std::uint32_t number) {
  return write_value(key_path, name, REG_DWORD, &number, sizeof number);
}

bool write_text_in_registry(std::string_view key_path, std::string_view name, std::string_view text) {
  const std::string terminated(text.substr(0, text.find('\0')));
  return write_value(key_path, name, REG_SZ, terminated.c_str(), terminated.size() + 1);
}

}  // namespace pv::platform
