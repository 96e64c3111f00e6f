// The lines of a settings file, one after the other, for its two readers: parse_settings() and with_setting().
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/settings_file.h"
#include "platform/settings_text.h"

namespace pv::platform {

inline constexpr std::string_view kLocalMachine = "HKEY_LOCAL_MACHINE";
inline constexpr std::string_view kTitleVersion5 = "Windows Registry Editor Version 5.00";

enum class SettingsLineKind {
  kBlank,
  kComment,
  kTitle,
  kKey,           // [key]
  kRemovedKey,    // [-key]
  kValue,         // "name"=value
  kRemovedValue,  // "name"=-
  kIgnored,       // a key of another root, or a line below one
  kMistake,
};

struct SettingsLine {
  SettingsLineKind kind = SettingsLineKind::kBlank;
  int number = 0;         // 1-based; of the first of several lines of a continued value
  SettingsSpan span;      // in the bytes, from the first line to the last
  bool in_key = false;    // the line is, or stands below, the [key] line of `key`
  std::string key;        // as canonical_key() gives it; of kRemovedKey: the key to remove
  std::string name;       // kValue, kRemovedValue
  SettingValue value;     // kValue
  bool regedit4 = false;  // texts in hex are bytes, not UTF-16

  // kValue: the text of the line, continued lines joined, and where in it the value stands.
  std::string text;
  std::size_t value_begin = 0;
  std::size_t value_end = 0;

  std::string mistake;  // kMistake
};

class SettingsReader {
 public:
  // `bytes` are borrowed.
  explicit SettingsReader(std::string_view bytes);
  SettingsEncoding encoding() const { return encoding_; }
  // False at the end; `line` then keeps what it held. Give the same `line` every time: the key is carried on in it.
  bool next(SettingsLine& line);

 private:
  enum class Section { kNone, kKey, kIgnored };

  void take_line(SettingsLine& line);
  void join_continued_lines(SettingsLine& line);
  SettingsLineKind read_line(SettingsLine& line);
  SettingsLineKind read_title(std::string_view trimmed, SettingsLine& line);
  SettingsLineKind read_key(std::string_view trimmed, SettingsLine& line);
  SettingsLineKind read_entry(SettingsLine& line);

  std::string_view bytes_;
  SettingsEncoding encoding_;
  std::size_t position_ = 0;
  int lines_taken_ = 0;
  bool regedit4_ = false;
  Section section_ = Section::kNone;
};

// A key path with what does not distinguish keys taken out: WOW6432Node after a leading SOFTWARE, and trailing
// backslashes. The result is `head` and `tail` put together; both are views of `path`.
struct KeyPieces {
  std::string_view head;
  std::string_view tail;
};
KeyPieces key_pieces(std::string_view path);
std::string canonical_key(std::string_view path);

// Whether `key` is `ancestor` or lies below it; both canonical.
bool is_key_or_below(std::string_view key, std::string_view ancestor);

bool starts_with_nocase(std::string_view text, std::string_view start);

}  // namespace pv::platform
