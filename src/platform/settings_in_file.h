// The settings of this process where they live in a file: what platform/settings_store.h says, for the file that the
// program or the environment variable PVMTAFILTER_SETTINGS names, or the system's usual one.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "platform/settings_file.h"
#include "platform/settings_store.h"

namespace pv::platform {

// Where the settings are when nothing names a file; nullptr on a system that then has them elsewhere.
extern const char* const kUsualSettingsFile;

// The file in use, or nullptr when a registry key is named instead, or nothing is and there is no usual one. A name
// that is too long for a path is the empty one, which names no file: cut, it might name another one. Valid until
// choose_settings_file().
const char* settings_file_path();

// The registry key that is named instead of a file; empty when none is. For when there is no file in use.
std::string_view chosen_registry_key();

// As use_settings_file(). Not while other threads read.
void choose_settings_file(std::string_view path);

// As the functions of platform/settings_store.h; there must be a file in use.
std::optional<std::size_t> read_text_in_file(std::string_view key_path, std::string_view name, std::span<char> out);
std::optional<std::uint32_t> read_number_in_file(std::string_view key_path, std::string_view name);
bool for_each_name_in_file(std::string_view key_path, const std::function<bool(std::string_view name)>& visit);
[[nodiscard]] bool write_in_file(std::string_view key_path, std::string_view name, const SettingValue& value);
std::optional<SettingsContent> all_in_file();
[[nodiscard]] bool write_in_file(std::span<const NumberSetting> numbers, std::chrono::milliseconds lock_limit);
void forget_settings_file();

}  // namespace pv::platform
