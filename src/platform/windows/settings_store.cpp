#include "platform/settings_store.h"

#include <algorithm>

#include "platform/settings_in_file.h"
#include "platform/windows/registry.h"

namespace pv::platform {

const char* const kUsualSettingsFile = nullptr;  // the registry

std::optional<std::size_t> read_text_setting(std::string_view key_path, std::string_view name, std::span<char> out) {
  return settings_file_path() != nullptr ? read_text_in_file(key_path, name, out)
                                         : read_text_in_registry(key_path, name, out);
}

std::optional<std::uint32_t> read_number_setting(std::string_view key_path, std::string_view name) {
  return settings_file_path() != nullptr ? read_number_in_file(key_path, name)
                                         : read_number_in_registry(key_path, name);
}

bool for_each_setting_name(std::string_view key_path, const std::function<bool(std::string_view name)>& visit) {
  return settings_file_path() != nullptr ? for_each_name_in_file(key_path, visit)
                                         : for_each_name_in_registry(key_path, visit);
}

bool write_number_setting(std::string_view key_path, std::string_view name, std::uint32_t number) {
  return settings_file_path() != nullptr ? write_in_file(key_path, name, number)
                                         : write_number_in_registry(key_path, name, number);
}

bool write_text_setting(std::string_view key_path, std::string_view name, std::string_view text) {
  return settings_file_path() != nullptr ? write_in_file(key_path, name, std::string(text))
                                         : write_text_in_registry(key_path, name, text);
}

bool write_number_settings(std::span<const NumberSetting> numbers, std::chrono::milliseconds lock_limit) {
  if (settings_file_path() != nullptr) return write_in_file(numbers, lock_limit);
  return std::all_of(numbers.begin(), numbers.end(), [](const NumberSetting& setting) {
    return write_number_in_registry(setting.key_path, setting.name, setting.number);
  });
}

std::string settings_location() {
  if (const char* const file = settings_file_path()) return file;
  const std::string_view key = chosen_registry_key();
  return std::string(key.empty() ? "HKEY_LOCAL_MACHINE" : key) + " (32-bit view)";
}

std::optional<SettingsContent> all_settings() {
  return settings_file_path() != nullptr ? all_in_file() : all_in_registry();
}

void use_settings_file(std::string_view path) {
  choose_settings_file(path);
}

void forget_settings() {
  forget_settings_file();
}

}  // namespace pv::platform
