#include "platform/settings_line.h"

#include <algorithm>

#include "platform/settings_value.h"

namespace pv::platform {
namespace {

constexpr std::string_view kTitleVersion4 = "REGEDIT4";
constexpr std::string_view kOtherRoots[] = {"HKEY_CLASSES_ROOT", "HKEY_CURRENT_USER", "HKEY_USERS",
                                            "HKEY_CURRENT_CONFIG"};
constexpr std::string_view kSoftwareWow = R"(SOFTWARE\WOW6432Node)";
constexpr std::string_view kSoftware = kSoftwareWow.substr(0, 8);
constexpr std::string_view kWow = kSoftwareWow.substr(8);

std::string_view trim(std::string_view text) {
  while (!text.empty() && is_settings_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_settings_blank(text.back())) text.remove_suffix(1);
  return text;
}

bool equal_nocase(std::string_view a, std::string_view b) {
  return NocaseEqual()(a, b);
}

SettingsLineKind mistake(SettingsLine& line, std::string what) {
  line.mistake = std::move(what) + "; the line is skipped";
  return SettingsLineKind::kMistake;
}

SettingsLineKind key_mistake(SettingsLine& line, std::string what) {
  line.mistake = std::move(what) + "; the values below it are skipped";
  return SettingsLineKind::kMistake;
}

bool has_nul(std::string_view text) {
  return text.find('\0') != std::string_view::npos;
}

SettingsLineKind nul_mistake(SettingsLine& line) {
  return mistake(line, "the line holds a NUL byte (a UTF-16 file needs its byte order mark)");
}

// Where the bracket is that closes the key of a trimmed line, or npos. A key's name may hold ']', so it is the first
// one with nothing but blanks or a comment behind it.
std::size_t find_closing_bracket(std::string_view text) {
  std::size_t at = text.find(']');
  for (; at != std::string_view::npos; at = text.find(']', at + 1)) {
    std::size_t behind = at + 1;
    skip_blanks(text, behind);
    if (behind == text.size() || text[behind] == ';') break;
  }
  return at;
}

bool is_other_root(std::string_view root) {
  return std::any_of(std::begin(kOtherRoots), std::end(kOtherRoots),
                     [root](std::string_view other) { return equal_nocase(root, other); });
}

// A line that goes on with the bytes of a hex value, and is nothing else.
bool is_continuation(std::string_view line) {
  const std::string_view text = trim(line);
  return !text.empty() && std::string_view("0123456789abcdefABCDEF\\,").find(text.front()) != std::string_view::npos;
}

}  // namespace

bool starts_with_nocase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && equal_nocase(text.substr(0, start.size()), start);
}

KeyPieces key_pieces(std::string_view path) {
  while (path.ends_with('\\')) path.remove_suffix(1);
  KeyPieces pieces{path, {}};
  if (!starts_with_nocase(path, kSoftware)) return pieces;
  std::string_view rest = path.substr(kSoftware.size());
  while (starts_with_nocase(rest, kWow) && (rest.size() == kWow.size() || rest[kWow.size()] == '\\')) {
    rest.remove_prefix(kWow.size());
    pieces = {path.substr(0, kSoftware.size()), rest};
  }
  return pieces;
}

std::string canonical_key(std::string_view path) {
  const KeyPieces pieces = key_pieces(path);
  return std::string(pieces.head).append(pieces.tail);
}

bool is_key_or_below(std::string_view key, std::string_view ancestor) {
  if (ancestor.empty()) return true;
  if (!starts_with_nocase(key, ancestor)) return false;
  return key.size() == ancestor.size() || key[ancestor.size()] == '\\';
}

SettingsReader::SettingsReader(std::string_view bytes)
    : bytes_(bytes), encoding_(settings_encoding(bytes)), position_(encoding_.mark_size) {}

bool SettingsReader::next(SettingsLine& line) {
  if (position_ >= bytes_.size()) return false;
  line.kind = read_line(line);
  line.in_key = section_ == Section::kKey;
  line.regedit4 = regedit4_;
  return true;
}

void SettingsReader::take_line(SettingsLine& line) {
  line.span = settings_line_at(bytes_, encoding_, position_);
  line.number = ++lines_taken_;
  line.text = decode_settings(bytes_.substr(line.span.begin, line.span.text_end - line.span.begin), encoding_);
  position_ = line.span.end;
}

// A '\' at the end of a line of bytes goes on with the next one, unless that is clearly no such line: in a file that
// broke off there, the next line must not be lost with it.
void SettingsReader::join_continued_lines(SettingsLine& line) {
  while (position_ < bytes_.size()) {
    const std::string_view text = trim(line.text);
    if (!text.ends_with('\\')) return;
    const SettingsSpan more = settings_line_at(bytes_, encoding_, position_);
    const std::string next = decode_settings(bytes_.substr(more.begin, more.text_end - more.begin), encoding_);
    if (!is_continuation(next)) return;
    line.text.resize(line.text.rfind('\\'));
    line.text += next;
    line.span.text_end = more.text_end;
    line.span.end = more.end;
    ++lines_taken_;
    position_ = more.end;
  }
}

SettingsLineKind SettingsReader::read_line(SettingsLine& line) {
  if (!encoding_.readable) {
    line.number = 1;
    line.span = {position_, bytes_.size(), bytes_.size()};
    position_ = bytes_.size();
    line.mistake = "the file is UTF-16 with the high byte first; save it as UTF-8; nothing of it is read";
    return SettingsLineKind::kMistake;
  }
  take_line(line);
  const std::string_view text = trim(line.text);
  if (text.empty()) return SettingsLineKind::kBlank;
  if (text.front() == ';') return SettingsLineKind::kComment;
  if (has_nul(text)) return nul_mistake(line);
  if (text.front() == '[') return read_key(text, line);
  if (text.front() == '"' || text.front() == '@') return read_entry(line);
  return read_title(text, line);
}

SettingsLineKind SettingsReader::read_title(std::string_view trimmed, SettingsLine& line) {
  const bool version4 = equal_nocase(trimmed, kTitleVersion4);
  if (version4 || equal_nocase(trimmed, kTitleVersion5)) {
    regedit4_ = version4;
    return SettingsLineKind::kTitle;
  }
  if (section_ == Section::kIgnored) return SettingsLineKind::kIgnored;
  return mistake(line, excerpt(trimmed) + " is no [key], no \"name\"=value and no ; comment");
}

SettingsLineKind SettingsReader::read_key(std::string_view trimmed, SettingsLine& line) {
  section_ = Section::kIgnored;
  const std::size_t closing = find_closing_bracket(trimmed);
  if (closing == std::string_view::npos) return key_mistake(line, "no ] behind the key");
  std::string_view path = trimmed.substr(1, closing - 1);
  const bool removed = path.starts_with('-');
  if (removed) path.remove_prefix(1);

  const std::size_t root_size = std::min(path.find('\\'), path.size());
  const std::string_view root = path.substr(0, root_size);
  if (is_other_root(root)) return SettingsLineKind::kIgnored;
  if (!equal_nocase(root, kLocalMachine)) {
    return key_mistake(line, "the key " + excerpt(path) + " does not begin with HKEY_LOCAL_MACHINE");
  }
  path.remove_prefix(std::min(root_size + 1, path.size()));
  line.key = canonical_key(path);
  section_ = removed ? Section::kNone : Section::kKey;
  return removed ? SettingsLineKind::kRemovedKey : SettingsLineKind::kKey;
}

SettingsLineKind SettingsReader::read_entry(SettingsLine& line) {
  std::size_t at = 0;
  skip_blanks(line.text, at);
  if (line.text[at] == '@') {
    line.name.clear();
    ++at;
  } else if (!take_quoted(line.text, at, line.name)) {
    return section_ == Section::kIgnored ? SettingsLineKind::kIgnored : mistake(line, "no quote behind the name");
  }
  skip_blanks(line.text, at);
  const bool assigned = at < line.text.size() && line.text[at] == '=';
  if (assigned) skip_blanks(line.text, ++at);
  line.value_begin = at;
  if (assigned && starts_with_nocase(std::string_view(line.text).substr(at), "hex")) join_continued_lines(line);
  if (section_ == Section::kIgnored) return SettingsLineKind::kIgnored;
  if (section_ == Section::kNone) return mistake(line, "the value stands below no key");
  if (!assigned) return mistake(line, "no = behind the name");
  if (has_nul(line.text)) return nul_mistake(line);  // in a continued line

  std::string what;
  const ValueOutcome outcome = take_value(line.text, at, regedit4_, line.value, what);
  if (outcome == ValueOutcome::kMistake) return mistake(line, std::move(what));
  line.value_end = at;
  skip_blanks(line.text, at);
  if (at < line.text.size() && line.text[at] != ';') {
    return mistake(line, excerpt(std::string_view(line.text).substr(at)) + " follows the value");
  }
  return outcome == ValueOutcome::kRemoval ? SettingsLineKind::kRemovedValue : SettingsLineKind::kValue;
}

}  // namespace pv::platform
