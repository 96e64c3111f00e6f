#include "platform/settings_text.h"

#include <algorithm>

namespace pv::platform {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

unsigned byte_at(std::string_view bytes, std::size_t at) {
  return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
}

char32_t unit_at(std::string_view bytes, std::size_t at) {
  return byte_at(bytes, at) | byte_at(bytes, at + 1) << 8;
}

void append_utf8(std::string& out, char32_t c) {
  const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (c < 0x80) return put(c);
  if (c < 0x800) {
    put(0xC0 | c >> 6);
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
  }
  put(0x80 | (c & 0x3F));
}

void append_unit(std::string& out, char32_t unit) {
  out.push_back(static_cast<char>(unit & 0xFF));
  out.push_back(static_cast<char>(unit >> 8 & 0xFF));
}

void append_utf16(std::string& out, char32_t c) {
  if (c < 0x10000) return append_unit(out, c);
  append_unit(out, 0xD800 | (c - 0x10000) >> 10);
  append_unit(out, 0xDC00 | ((c - 0x10000) & 0x3FF));
}

// The lead bytes of UTF-8; `smallest` refuses a character written longer than it needs.
struct LeadByte {
  unsigned mask, pattern;
  std::size_t size;
  char32_t smallest;
};
constexpr LeadByte kLeadBytes[] = {
    {0x80, 0x00, 1, 0},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

// The character at `at`, and where the next one is; U+FFFD and one byte when there is none.
char32_t next_character(std::string_view text, std::size_t& at) {
  const std::size_t begin = at++;
  const unsigned lead = byte_at(text, begin);
  for (const LeadByte& kind : kLeadBytes) {
    if ((lead & kind.mask) != kind.pattern) continue;
    if (text.size() - begin < kind.size) return kReplacement;
    char32_t c = lead & ~kind.mask;
    for (std::size_t i = 1; i < kind.size; ++i) {
      const unsigned more = byte_at(text, begin + i);
      if ((more & 0xC0) != 0x80) return kReplacement;
      c = c << 6 | (more & 0x3F);
    }
    if (c < kind.smallest || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return kReplacement;
    at = begin + kind.size;
    return c;
  }
  return kReplacement;
}

// Where the line feed is, or the size of the bytes. In UTF-16 the byte 0x0A is also one half of other characters.
std::size_t find_line_feed(std::string_view bytes, SettingsEncoding encoding, std::size_t begin) {
  std::size_t at = bytes.find('\n', begin);
  while (encoding.utf16 && at != std::string_view::npos) {
    // A file that broke off inside its last character may have lost the second half of a line feed.
    if (at % 2 == 0 && (at + 1 == bytes.size() || bytes[at + 1] == '\0')) break;
    at = bytes.find('\n', at + 1);
  }
  return at == std::string_view::npos ? bytes.size() : at;
}

}  // namespace

SettingsEncoding settings_encoding(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) return {.utf16 = false, .readable = true, .mark_size = 3};
  if (bytes.starts_with("\xFF\xFE")) return {.utf16 = true, .readable = true, .mark_size = 2};
  if (bytes.starts_with("\xFE\xFF")) return {.utf16 = true, .readable = false, .mark_size = 2};
  return {};
}

SettingsSpan settings_line_at(std::string_view bytes, SettingsEncoding encoding, std::size_t begin) {
  const std::size_t unit = encoding.utf16 ? 2 : 1;
  const std::size_t feed = find_line_feed(bytes, encoding, begin);
  SettingsSpan line{begin, feed, std::min(feed + unit, bytes.size())};
  if (line.end == feed || feed - begin < unit) return line;
  if (byte_at(bytes, feed - unit) == '\r' && (unit == 1 || bytes[feed - 1] == '\0')) line.text_end -= unit;
  return line;
}

std::string_view prevailing_line_end(std::string_view bytes, SettingsEncoding encoding) {
  const std::size_t unit = encoding.utf16 ? 2 : 1;
  std::size_t bare = 0;
  std::size_t with_return = 0;
  for (std::size_t at = encoding.mark_size; at < bytes.size();) {
    const SettingsSpan line = settings_line_at(bytes, encoding, at);
    if (line.end - line.text_end == unit) ++bare;
    if (line.end - line.text_end == 2 * unit) ++with_return;
    at = line.end;
  }
  if (bare == with_return) return encoding.utf16 ? "\r\n" : "\n";
  return bare > with_return ? "\n" : "\r\n";
}

std::string utf8_from_utf16(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    const char32_t unit = unit_at(bytes, at);
    const char32_t next = unit_at(bytes, at + 2);
    if (unit < 0xD800 || unit > 0xDFFF) {
      append_utf8(out, unit);
    } else if (unit < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF) {
      append_utf8(out, 0x10000 + ((unit & 0x3FF) << 10 | (next & 0x3FF)));
      at += 2;
    } else {
      append_utf8(out, kReplacement);
    }
  }
  return out;
}

std::string utf16_from_utf8(std::string_view text) {
  std::string out;
  out.reserve(text.size() * 2);
  for (std::size_t at = 0; at < text.size();) append_utf16(out, next_character(text, at));
  return out;
}

std::string decode_settings(std::string_view bytes, SettingsEncoding encoding) {
  return encoding.utf16 ? utf8_from_utf16(bytes) : std::string(bytes);
}

std::string encode_settings(std::string_view text, SettingsEncoding encoding) {
  return encoding.utf16 ? utf16_from_utf8(text) : std::string(text);
}

}  // namespace pv::platform
