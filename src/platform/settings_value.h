// A single value of a settings file as it is written after its name: "text", dword:0000002a, hex(2):25,00, or - for a
// value that is removed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/settings_file.h"

namespace pv::platform {

constexpr bool is_settings_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

// Steps over blanks.
void skip_blanks(std::string_view text, std::size_t& at);

// Takes the text in quotes that begins at `at` and steps behind its closing quote. False when that is missing.
bool take_quoted(std::string_view text, std::size_t& at, std::string& out);

enum class ValueOutcome { kValue, kRemoval, kMistake };

// Takes the value at `at` and steps behind it. `regedit4`: texts in hex are bytes, not UTF-16. kMistake: `mistake` says
// what is wrong.
ValueOutcome take_value(std::string_view text, std::size_t& at, bool regedit4, SettingValue& value,
                        std::string& mistake);

// The value as it is written. A text ends at its first NUL; one with line ends, which no line can hold, becomes hex(1).
std::string format_value(const SettingValue& value, bool regedit4);
std::string format_quoted(std::string_view text);

// At most 40 bytes of `text` in quotes, for a message.
std::string excerpt(std::string_view text);

}  // namespace pv::platform
