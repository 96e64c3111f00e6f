#include "platform/settings_store.h"

#include "platform/settings_in_file.h"

namespace pv::platform {

const char* const kUsualSettingsFile = "/etc/pvmtafilter/settings.reg";

std::optional<std::size_t> read_text_setting(std::string_view key_path, std::string_view name, std::span<char> out) {
  return read_text_in_file(key_path, name, out);
}

std::optional<std::uint32_t> read_number_setting(std::string_view key_path, std::string_view name) {
  return read_number_in_file(key_path, name);
}

bool for_each_setting_name(std::string_view key_path, const std::function<bool(std::string_view name)>& visit) {
  return for_each_name_in_file(key_path, visit);
}

bool write_number_setting(std::string_view key_path, std::string_view name, std::uint32_t number) {
  return write_in_file(key_path, name, number);
}

bool write_text_setting(std::string_view key_path, std::string_view name, std::string_view text) {
  return write_in_file(key_path, name, std::string(text));
}

bool write_number_settings(std::span<const NumberSetting> numbers, std::chrono::milliseconds lock_limit) {
  return write_in_file(numbers, lock_limit);
}

std::string settings_location() {
  return settings_file_path();
}

std::optional<SettingsContent> all_settings() {
  return all_in_file();
}

bool is_registry_key(std::string_view) {
  return false;
}

void use_settings_file(std::string_view path) {
  choose_settings_file(path);
}

void forget_settings() {
  forget_settings_file();
}

}  // namespace pv::platform
