// The settings file: a text in the export format of the registry editor, read into keys and values and edited in place.
//
//     Windows Registry Editor Version 5.00           optional first line, or REGEDIT4
//     ; a comment
//     [HKEY_LOCAL_MACHINE\SOFTWARE\Post Vane\Post Vane]
//     "Mail Root"="/srv/mail"                        text; \\ and \" are escapes
//     "Update Statistics"=dword:00000001             number, hexadecimal
//
// The bytes are UTF-8 (with or without a mark) or UTF-16LE with its mark, lines end in LF or CR LF. Texts are UTF-8 in
// memory and end at their first NUL. Also read: hex(1), hex(2) and the first text of hex(7) as texts (UTF-16LE, below
// REGEDIT4 bytes), hex(4) and four bytes of other hex types as numbers, other bytes as the text they make, values
// continued on the next line after a '\', "name"=- and [-key] as removals, @= as the value "". A '\' that escapes
// nothing stands for itself. Keys of other roots are ignored, and so are comments behind a value. Keys and names are
// compared without regard to ASCII case, and SOFTWARE\WOW6432Node\Post Vane is the same key as SOFTWARE\Post Vane. A
// key that occurs again goes on, and the last value of a name counts.
//
// Everything here works on texts in memory; platform/settings_store.h keeps the process's own settings.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace pv::platform {

using SettingValue = std::variant<std::string, std::uint32_t>;

// Hash and equality without regard to ASCII case, for look-ups by std::string_view that allocate nothing.
struct NocaseHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept;
};
struct NocaseEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept;
};

// One key: its values by name, and the names in file order as first spelt.
struct SettingKey {
  std::string path;  // below HKEY_LOCAL_MACHINE, as first spelt, without WOW6432Node
  std::unordered_map<std::string, SettingValue, NocaseHash, NocaseEqual> values;
  std::vector<std::string> names;
};

struct SettingsContent {
  std::unordered_map<std::string, SettingKey, NocaseHash, NocaseEqual> keys;
  std::vector<std::string> key_order;  // the keys' paths in file order

  // nullptr when the key or the value is missing. Any spelling of the key is accepted, WOW6432Node included.
  const SettingKey* find_key(std::string_view key_path) const;
  const SettingValue* find(std::string_view key_path, std::string_view name) const;
};

// A line that could not be read and was skipped.
struct SettingsMistake {
  int line = 0;      // 1-based
  std::string what;  // what is wrong and what was done: "no closing quote; the line is skipped"
};

// Reads the bytes of a settings file. Never fails: unreadable lines are skipped and, when `mistakes` is given, listed.
SettingsContent parse_settings(std::string_view bytes, std::vector<SettingsMistake>* mistakes = nullptr);

// The bytes of the file with one value set: the line that holds it is rewritten, else a line is added at the end of its
// key, else the key is added at the end of the file. Every other line, comment, order, the line ends and the encoding
// stay. `bytes` itself when it holds that value already, or when the key or name cannot stand in a line (line ends,
// NUL) or the file is none that is read (UTF-16BE). A text is cut at its first NUL.
std::string with_setting(std::string_view bytes, std::string_view key_path, std::string_view name,
                         const SettingValue& value);

}  // namespace pv::platform
