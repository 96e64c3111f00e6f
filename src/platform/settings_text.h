// The bytes of a settings file as lines of UTF-8 text. Lines are found in the bytes as they are and turned into UTF-8
// one by one, so that an edit of one line leaves every byte of the others alone.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pv::platform {

struct SettingsEncoding {
  bool utf16 = false;         // UTF-16LE, else UTF-8
  bool readable = true;       // false for UTF-16BE, which nothing here reads
  std::size_t mark_size = 0;  // bytes of the byte order mark
};

SettingsEncoding settings_encoding(std::string_view bytes);

// One line by offsets into the bytes: its text is [begin, text_end), its line end [text_end, end).
struct SettingsSpan {
  std::size_t begin = 0;
  std::size_t text_end = 0;
  std::size_t end = 0;
};

// The line that begins at `begin`, which is below `bytes.size()`.
SettingsSpan settings_line_at(std::string_view bytes, SettingsEncoding encoding, std::size_t begin);

// The line end most lines have: "\n" or "\r\n". A file without any: that of the system the encoding comes from.
std::string_view prevailing_line_end(std::string_view bytes, SettingsEncoding encoding);

// UTF-16LE to UTF-8. An unpaired surrogate becomes U+FFFD; a last odd byte is taken with a high byte of 0, which is
// what a write that broke off most likely left out.
std::string utf8_from_utf16(std::string_view bytes);

// UTF-8 to UTF-16LE. Each byte that belongs to no character becomes U+FFFD.
std::string utf16_from_utf8(std::string_view text);

std::string decode_settings(std::string_view bytes, SettingsEncoding encoding);
std::string encode_settings(std::string_view text, SettingsEncoding encoding);

}  // namespace pv::platform
