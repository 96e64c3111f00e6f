// The settings of this process: values below HKEY_LOCAL_MACHINE, in the view of a 32-bit process.
//
// They live in a settings file (platform/settings_file.h) that the program or the environment variable
// PVMTAFILTER_SETTINGS names; when neither does, in /etc/pvmtafilter/settings.reg, on Windows in the registry. An edit
// of the file takes effect at the next read; a read that finds nothing changed costs about a microsecond. A missing or
// unreadable file is a file without values. Any thread may read and write at any time.
//
// On Windows a registry key can be named instead of a file, as HKEY_LOCAL_MACHINE\... or HKEY_CURRENT_USER\... (HKLM
// and HKCU for short). It then stands in the place of SOFTWARE\Post Vane\Post Vane.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/settings_file.h"

namespace pv::platform {

// Copies a text value into `out`, without a terminating NUL. nullopt when the key or value is missing, is no text, or
// its length plus 1 is more than `out.size()`: nothing is cut. Else the length, 0 for an empty text.
std::optional<std::size_t> read_text_setting(std::string_view key_path, std::string_view name, std::span<char> out);

// A number, or nullopt when the key or value is missing or is no number.
std::optional<std::uint32_t> read_number_setting(std::string_view key_path, std::string_view name);

// Calls `visit` with every value name of a key in the order of the store until it answers false. False when there is no
// such key.
bool for_each_setting_name(std::string_view key_path, const std::function<bool(std::string_view name)>& visit);

// While it lives, what this thread reads is of one state of the settings file, that of its first read, and the file is
// asked for changes once. Inside another one it begins with the state of that. For a few reads in a row.
class SameSettings {
 public:
  SameSettings();
  ~SameSettings();
  // The next read takes the settings as they are then.
  void renew() { state_ = nullptr; }
  SameSettings(const SameSettings&) = delete;
  SameSettings& operator=(const SameSettings&) = delete;

 private:
  friend struct SettingsInUse;
  SameSettings* const outer_;
  std::shared_ptr<const void> state_;
};

// Sets a value, creating its key if needed. A file is replaced in one step under a lock that other processes share, and
// not at all when it holds the value already. False when that fails: the settings are as they were.
[[nodiscard]] bool write_number_setting(std::string_view key_path, std::string_view name, std::uint32_t number);
[[nodiscard]] bool write_text_setting(std::string_view key_path, std::string_view name, std::string_view text);

// Every value of the file as it is now, or of the registry those in SOFTWARE\Post Vane\Post Vane and below. nullopt
// when the file or the key cannot be read. For programs that show settings; texts beyond 65535 bytes are left out.
std::optional<SettingsContent> all_settings();

struct NumberSetting {
  std::string_view key_path;
  std::string_view name;
  std::uint32_t number = 0;
};

// The same for several numbers at once: a file is replaced once, with all of them or none. `lock_limit` is how long to
// wait for other writers of the file. Meant for numbers that change often: it does not slow down the reads that follow,
// for which an edit of the file in the same instant may go unnoticed for a tenth of a second.
[[nodiscard]] bool write_number_settings(std::span<const NumberSetting> numbers, std::chrono::milliseconds lock_limit);

// Where the settings are, for messages: the path of the settings file, or "HKEY_LOCAL_MACHINE (32-bit view)".
std::string settings_location();

// Whether `place` names a registry key. False for everything where the system has no registry.
bool is_registry_key(std::string_view place);

// Uses the settings file at `path` from now on, or the registry key of that name; an empty path goes back to the usual
// ones. Not while other threads read.
void use_settings_file(std::string_view path);

// Forgets what was read, so that unloading the agent leaves no memory behind. The next read reads the file again.
void forget_settings();

}  // namespace pv::platform
