// with_setting(): one value of a settings file's bytes changed, everything else left as it is.
#include <algorithm>
#include <optional>

#include "platform/settings_file.h"
#include "platform/settings_line.h"
#include "platform/settings_value.h"

namespace pv::platform {
namespace {

// A line of the file, and how bytes are read behind it: files put together may be of both versions.
struct Spot {
  SettingsSpan line;
  bool regedit4 = false;
};

// What a walk through the file found out about one value. Only what stands behind the last removal of it counts.
struct Place {
  std::optional<SettingsLine> value;  // the last line that sets it
  std::optional<Spot> last;           // the line of its key behind which a new value goes
  std::optional<Spot> comment;        // a comment that belongs to the key unless the next key follows at once
  Spot end;                           // the last line of the file
  bool ends_blank = false;            // ... is blank
};

void settle_comment(Place& place) {
  if (place.comment) place.last = place.comment;
  place.comment.reset();
}

void note_line_of_key(const SettingsLine& line, std::string_view name, Place& place) {
  if (line.kind == SettingsLineKind::kBlank) return settle_comment(place);
  if (line.kind == SettingsLineKind::kComment) {
    place.comment = {line.span, line.regedit4};
    return;
  }
  place.comment.reset();
  place.last = {line.span, line.regedit4};
  if (!NocaseEqual()(line.name, name)) return;
  if (line.kind == SettingsLineKind::kValue) place.value = line;
  if (line.kind == SettingsLineKind::kRemovedValue) place.value.reset();
}

Place find_place(SettingsReader& reader, std::string_view key, std::string_view name) {
  Place place;
  for (SettingsLine line; reader.next(line);) {
    place.end = {line.span, line.regedit4};
    place.ends_blank = line.kind == SettingsLineKind::kBlank;
    if (line.in_key && NocaseEqual()(line.key, key)) {
      note_line_of_key(line, name, place);
      continue;
    }
    place.comment.reset();
    if (line.kind == SettingsLineKind::kRemovedKey && is_key_or_below(key, line.key)) {
      place.value.reset();
      place.last.reset();
    }
  }
  settle_comment(place);
  return place;
}

// Rewrites the value within its line: the name as it is spelt there, blanks and a comment behind it stay.
std::string with_value_replaced(std::string_view bytes, SettingsEncoding encoding, const SettingsLine& line,
                                const SettingValue& value) {
  const std::string_view text = line.text;
  std::string changed(text.substr(0, line.value_begin));
  changed += format_value(value, line.regedit4);
  changed += text.substr(line.value_end);
  std::string out(bytes.substr(0, line.span.begin));
  out += encode_settings(changed, encoding);
  return out.append(bytes.substr(line.span.text_end));
}

// Puts `lines` (with LF between them, none at the end) behind a line of the file, in the file's own line ends. A last
// line that had no line end passes that on to the new last line.
std::string with_lines_behind(std::string_view bytes, SettingsEncoding encoding, const SettingsSpan& line,
                              std::string_view lines) {
  const std::string_view line_end = prevailing_line_end(bytes, encoding);
  const bool complete = line.end > line.text_end || line.end == encoding.mark_size;
  std::string added(complete ? std::string_view() : line_end);
  for (const char c : lines) c == '\n' ? added.append(line_end) : added.append(1, c);
  if (complete) added.append(line_end);
  std::string out(bytes.substr(0, line.end));
  out += encode_settings(added, encoding);
  return out.append(bytes.substr(line.end));
}

std::string with_key_added(std::string_view bytes, SettingsEncoding encoding, const Place& place,
                           std::string_view key_path, std::string_view entry) {
  const bool empty = bytes.size() <= encoding.mark_size;
  std::string lines(empty ? kTitleVersion5 : std::string_view());
  if (empty) lines += "\n\n";
  if (!empty && !place.ends_blank) lines += "\n";
  lines.append("[").append(kLocalMachine);
  if (!key_path.empty()) lines.append("\\").append(key_path);
  lines.append("]\n").append(entry);
  const SettingsSpan end_of_mark{encoding.mark_size, encoding.mark_size, encoding.mark_size};
  return with_lines_behind(bytes, encoding, empty ? end_of_mark : place.end.line, lines);
}

// Whether a line of the file can hold the key or name such that it reads back the same.
bool can_be_written(std::string_view name, SettingsEncoding encoding) {
  if (name.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos) return false;
  return decode_settings(encode_settings(name, encoding), encoding) == name;
}

bool key_can_be_written(std::string_view key_path, SettingsEncoding encoding) {
  for (std::size_t at = key_path.find(']'); at != std::string_view::npos; at = key_path.find(']', at + 1)) {
    std::size_t behind = at + 1;
    skip_blanks(key_path, behind);
    if (behind < key_path.size() && key_path[behind] == ';') return false;
  }
  return can_be_written(key_path, encoding);
}

}  // namespace

std::string with_setting(std::string_view bytes, std::string_view key_path, std::string_view name,
                         const SettingValue& value) {
  SettingsReader reader(bytes);
  const SettingsEncoding encoding = reader.encoding();
  if (encoding.utf16 && bytes.size() % 2 != 0) {
    // Half a character at the end: what is added must not begin in the middle of it.
    const std::string whole = std::string(bytes) + '\0';
    std::string changed = with_setting(whole, key_path, name, value);
    return changed == whole ? std::string(bytes) : changed;
  }
  while (key_path.ends_with('\\')) key_path.remove_suffix(1);
  if (!encoding.readable || !key_can_be_written(key_path, encoding) || !can_be_written(name, encoding)) {
    return std::string(bytes);
  }
  const Place place = find_place(reader, canonical_key(key_path), name);
  if (place.value && place.value->value == value) return std::string(bytes);
  if (place.value) return with_value_replaced(bytes, encoding, *place.value, value);
  const bool regedit4 = place.last.value_or(place.end).regedit4;
  const std::string entry = (name.empty() ? "@" : format_quoted(name)) + "=" + format_value(value, regedit4);
  if (place.last) return with_lines_behind(bytes, encoding, place.last->line, entry);
  return with_key_added(bytes, encoding, place, key_path, entry);
}

}  // namespace pv::platform
