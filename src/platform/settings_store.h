// The settings of this process: values below HKEY_LOCAL_MACHINE, in the view of a 32-bit process.
//
// Here they live in a settings file (platform/settings_file.h), named by the environment variable PVMTAFILTER_SETTINGS,
// else /etc/pvmtafilter/settings.reg. An edit of the file takes effect at the next read; a read that finds nothing
// changed costs about a microsecond. A missing or unreadable file is a file without values. Any thread may read and
// write at any time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pv::platform {

// Copies a text value into `out`, without a terminating NUL. nullopt when the key or value is missing, is no text, or
// its length plus 1 is more than `out.size()`: nothing is cut. Else the length, 0 for an empty text.
std::optional<std::size_t> read_text_setting(std::string_view key_path, std::string_view name, std::span<char> out);

// A number, or nullopt when the key or value is missing or is no number.
std::optional<std::uint32_t> read_number_setting(std::string_view key_path, std::string_view name);

// Calls `visit` with every value name of a key in the order of the store until it answers false. False when there is no
// such key.
bool for_each_setting_name(std::string_view key_path, const std::function<bool(std::string_view name)>& visit);

// Sets a value, creating its key if needed, under a lock that other processes share, and replaces the file in one step.
// Writing what is there already writes nothing. False when the file cannot be locked or replaced: it is as it was.
[[nodiscard]] bool write_number_setting(std::string_view key_path, std::string_view name, std::uint32_t number);
[[nodiscard]] bool write_text_setting(std::string_view key_path, std::string_view name, std::string_view text);

// Where the settings are, for messages: the path of the settings file.
std::string settings_location();

// Uses the settings file at `path` from now on; an empty path goes back to the environment's. Not while other threads
// read.
void use_settings_file(std::string_view path);

// Forgets what was read, so that unloading the agent leaves no memory behind. The next read reads the file again.
void forget_settings();

}  // namespace pv::platform
