// The registry below HKEY_LOCAL_MACHINE, or the key chosen in the place of SOFTWARE\Post Vane\Post Vane, as a 32-bit
// process sees it, whatever this one is. The functions do what those of platform/settings_store.h say. Names and texts
// are in the system's single-byte character set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

#include "platform/settings_file.h"

namespace pv::platform {

// A text value without a terminating NUL is read too. Texts that hold references to environment variables are given as
// they stand; of several texts the first.
std::optional<std::size_t> read_text_in_registry(std::string_view key_path, std::string_view name, std::span<char> out);

// Any value of 4 bytes but a text.
std::optional<std::uint32_t> read_number_in_registry(std::string_view key_path, std::string_view name);

// Names longer than 255 bytes are passed over.
bool for_each_name_in_registry(std::string_view key_path, const std::function<bool(std::string_view name)>& visit);

// False when the key cannot be opened or created for writing. A text ends at its first NUL.
[[nodiscard]] bool write_number_in_registry(std::string_view key_path, std::string_view name, std::uint32_t number);
[[nodiscard]] bool write_text_in_registry(std::string_view key_path, std::string_view name, std::string_view text);

// What is in SOFTWARE\Post Vane\Post Vane and below. nullopt when there is no such key.
std::optional<SettingsContent> all_in_registry();

}  // namespace pv::platform
