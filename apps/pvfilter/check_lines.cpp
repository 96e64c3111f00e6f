#include "pvfilter/check_lines.h"

#include "common/bounded_text.h"
#include "filters/limits.h"

namespace pvfilter {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Marks[] = {"\xFF\xFE", "\xFE\xFF"};

}  // namespace

CheckedLines::CheckedLines(const std::string& path, Findings& findings) : path_(path), findings_(findings) {
  [[maybe_unused]] const bool opened = file_.open(path, pv::platform::FileMode::kText);
}

std::optional<std::string_view> CheckedLines::next() {
  const std::optional<std::string_view> line = file_.read_line(pv::kTableLine);
  if (!line) return std::nullopt;
  if (!continues_) ++number_;
  if (continues_)
    findings_.add(path_, number_, "the line has more than 2047 bytes; the rest is read as a line of its own");
  continues_ = !line->ends_with('\n') && line->size() + 1 == pv::kTableLine;
  if (number_ == 1 && line->starts_with(kUtf8Mark)) {
    findings_.add(path_, 1,
                  "the file begins with a byte order mark, which is part of the first field; save it without");
  }
  const bool utf16 = line->starts_with(kUtf16Marks[0]) || line->starts_with(kUtf16Marks[1]);
  if (number_ == 1 && utf16) {
    findings_.add(path_, 1, "the file is UTF-16, which the agent does not read; save it as UTF-8 or Windows-1252");
  } else if (line->find('\0') != std::string_view::npos) {
    findings_.add(path_, number_, "the line holds a NUL byte; what follows it is not read");
  }
  return pv::until_nul(*line);
}

}  // namespace pvfilter
