#include "platform/settings_value.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/settings_line.h"
#include "platform/settings_text.h"

namespace pv::platform {
namespace {

// Value types of the registry that stand in hex(...).
constexpr std::uint32_t kTypeText = 1;
constexpr std::uint32_t kTypeExpandedText = 2;
constexpr std::uint32_t kTypeBinary = 3;
constexpr std::uint32_t kTypeNumber = 4;
constexpr std::uint32_t kTypeTextList = 7;

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::size_t kMaxExcerpt = 40;  // bytes of the file repeated in a message

int hex_digit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

// Takes 1 to `max_digits` hexadecimal digits; false when there is none or one too many.
bool take_hex(std::string_view text, std::size_t& at, std::size_t max_digits, std::uint32_t& number) {
  const std::size_t begin = at;
  number = 0;
  for (; at < text.size() && hex_digit(text[at]) >= 0; ++at) {
    if (at - begin == max_digits) return false;
    number = number << 4 | static_cast<std::uint32_t>(hex_digit(text[at]));
  }
  return at > begin;
}

bool take_char(std::string_view text, std::size_t& at, char c) {
  if (at >= text.size() || text[at] != c) return false;
  ++at;
  return true;
}

// hex: or hex(type):
bool take_hex_type(std::string_view text, std::size_t& at, std::uint32_t& type) {
  at += std::string_view("hex").size();
  type = kTypeBinary;
  if (take_char(text, at, '(') && !(take_hex(text, at, 8, type) && take_char(text, at, ')'))) return false;
  return take_char(text, at, ':');
}

bool at_end(std::string_view text, std::size_t at) {
  return at >= text.size() || text[at] == ';';
}

// Bytes with commas between, and none at the end: a comma there means that the file broke off.
bool take_bytes(std::string_view text, std::size_t& at, std::string& bytes) {
  skip_blanks(text, at);
  if (at_end(text, at)) return true;
  for (;;) {
    std::uint32_t byte = 0;
    if (!take_hex(text, at, 2, byte)) return false;
    bytes.push_back(static_cast<char>(byte));
    std::size_t behind = at;
    skip_blanks(text, behind);
    if (!take_char(text, behind, ',')) return true;
    skip_blanks(text, behind);
    at = behind;
  }
}

std::string until_nul(std::string text) {
  text.resize(std::min(text.find('\0'), text.size()));
  return text;
}

std::uint32_t little_endian(std::string_view four_bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(four_bytes[i]);
  return number;
}

// A reader of texts and numbers sees of the other types what their bytes make.
SettingValue value_of_bytes(std::uint32_t type, std::string bytes, bool regedit4) {
  const bool is_text = type == kTypeText || type == kTypeExpandedText || type == kTypeTextList;
  if (is_text && !regedit4) return until_nul(utf8_from_utf16(bytes));
  if (!is_text && bytes.size() == sizeof(std::uint32_t)) return little_endian(bytes);
  return until_nul(std::move(bytes));
}

ValueOutcome take_hex_value(std::string_view text, std::size_t& at, bool regedit4, SettingValue& value,
                            std::string& mistake) {
  std::uint32_t type = 0;
  if (!take_hex_type(text, at, type)) {
    mistake = "hex must be followed by ':' or by a type in parentheses and ':'";
    return ValueOutcome::kMistake;
  }
  std::string bytes;
  if (!take_bytes(text, at, bytes)) {
    mistake = "the list of bytes is broken off or holds something else than two-digit bytes";
    return ValueOutcome::kMistake;
  }
  if (type == kTypeNumber && bytes.size() != sizeof(std::uint32_t)) {
    mistake = "a number must have four bytes";
    return ValueOutcome::kMistake;
  }
  value = value_of_bytes(type, std::move(bytes), regedit4);
  return ValueOutcome::kValue;
}

ValueOutcome take_dword(std::string_view text, std::size_t& at, SettingValue& value, std::string& mistake) {
  const std::size_t begin = at;
  at += std::string_view("dword:").size();
  skip_blanks(text, at);
  std::uint32_t number = 0;
  if (!take_hex(text, at, 8, number)) {
    mistake = excerpt(text.substr(begin)) + " is no number: dword: is followed by 1 to 8 hexadecimal digits";
    return ValueOutcome::kMistake;
  }
  value = number;
  return ValueOutcome::kValue;
}

ValueOutcome take_text(std::string_view text, std::size_t& at, SettingValue& value, std::string& mistake) {
  std::string taken;
  if (!take_quoted(text, at, taken)) {
    mistake = "no closing quote (a backslash at the end of a text is written \\\\)";
    return ValueOutcome::kMistake;
  }
  value = std::move(taken);
  return ValueOutcome::kValue;
}

std::string format_hex(std::string_view bytes) {
  std::string out;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!out.empty()) out += ',';
    out += kHexDigits[byte >> 4];
    out += kHexDigits[byte & 15];
  }
  return out;
}

std::string format_number(std::uint32_t number) {
  std::string out = "dword:";
  for (int shift = 28; shift >= 0; shift -= 4) out += kHexDigits[number >> shift & 15];
  return out;
}

}  // namespace

void skip_blanks(std::string_view text, std::size_t& at) {
  while (at < text.size() && is_settings_blank(text[at])) ++at;
}

bool take_quoted(std::string_view text, std::size_t& at, std::string& out) {
  out.clear();
  for (++at; at < text.size(); ++at) {
    if (text[at] == '"') {
      ++at;
      return true;
    }
    const bool escape = text[at] == '\\' && at + 1 < text.size() && (text[at + 1] == '\\' || text[at + 1] == '"');
    if (escape) ++at;
    out += text[at];
  }
  return false;
}

ValueOutcome take_value(std::string_view text, std::size_t& at, bool regedit4, SettingValue& value,
                        std::string& mistake) {
  const std::string_view rest = text.substr(at);
  if (rest.starts_with('"')) return take_text(text, at, value, mistake);
  if (starts_with_nocase(rest, "dword:")) return take_dword(text, at, value, mistake);
  if (starts_with_nocase(rest, "hex")) return take_hex_value(text, at, regedit4, value, mistake);
  if (take_char(text, at, '-')) return ValueOutcome::kRemoval;
  mistake = excerpt(rest) + " is no value: a text in quotes, dword:, hex: or - is expected";
  return ValueOutcome::kMistake;
}

std::string format_value(const SettingValue& value, bool regedit4) {
  if (const auto* number = std::get_if<std::uint32_t>(&value)) return format_number(*number);
  const std::string text = until_nul(std::get<std::string>(value));
  if (text.find_first_of("\r\n") == std::string::npos) return format_quoted(text);
  const std::string terminated = text + '\0';
  return "hex(1):" + format_hex(regedit4 ? terminated : utf16_from_utf8(terminated));
}

std::string format_quoted(std::string_view text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out += '"';
}

std::string excerpt(std::string_view text) {
  std::string out(text.substr(0, kMaxExcerpt));
  for (char& c : out) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
  }
  return '"' + out + (text.size() > kMaxExcerpt ? "...\"" : "\"");
}

}  // namespace pv::platform
