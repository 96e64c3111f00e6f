#include <array>
#include <string>
#include <utility>
#include <vector>

#include "platform/windows/registry.h"
#include "platform/windows/registry_key.h"

namespace pv::platform {
namespace {

constexpr std::size_t kLongestKeyName = 255;                // bytes of one component of a path
constexpr std::size_t kLongestText = std::size_t{1} << 16;  // bytes; the agent reads none that is longer than 2047

std::vector<std::string> keys_below(const RegistryKey& key) {
  std::vector<std::string> names;
  std::array<char, kLongestKeyName + 1> name{};
  for (DWORD index = 0;; ++index) {
    auto size = static_cast<DWORD>(name.size());
    if (::RegEnumKeyExA(key.get(), index, name.data(), &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
      return names;
    names.emplace_back(name.data(), size);
  }
}

std::optional<SettingValue> value_of(std::string_view path, std::string_view name) {
  if (const auto number = read_number_in_registry(path, name)) return *number;
  std::string text(kLongestText, '\0');
  const auto length = read_text_in_registry(path, name, text);
  if (!length) return std::nullopt;
  text.resize(*length);
  return text;
}

void add_values(SettingKey& key) {
  for_each_name_in_registry(key.path, [&](std::string_view name) {
    if (auto value = value_of(key.path, name)) {
      key.names.emplace_back(name);
      key.values.emplace(name, *std::move(value));
    }
    return true;
  });
}

// False when there is no such key.
bool add_tree(const std::string& path, SettingsContent& content) {
  const RegistryKey key(path, RegistryKey::Access::kRead);
  if (!key.is_open()) return false;
  content.key_order.push_back(path);
  SettingKey& added = content.keys[path];
  added.path = path;
  add_values(added);
  for (const std::string& name : keys_below(key)) add_tree(path + '\\' + name, content);
  return true;
}

}  // namespace

std::optional<SettingsContent> all_in_registry() {
  SettingsContent content;
  if (!add_tree(std::string(kServerKey), content)) return std::nullopt;
  return content;
}

}  // namespace pv::platform
