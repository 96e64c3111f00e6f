// The lines of a text file as the agent reads them, with what is wrong with them as lines.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "pvfilter/check_findings.h"

namespace pvfilter {

class CheckedLines {
 public:
  // Files that cannot be opened are the caller's to report: see is_open().
  CheckedLines(const std::string& path, Findings& findings);
  bool is_open() const { return file_.is_open(); }

  // The next line with its line end, up to its first NUL; nullopt at the end of the file. A line that is longer than
  // 2047 bytes comes in pieces, each a line of its own, as for the agent; NUL bytes and byte order marks are reported.
  std::optional<std::string_view> next();
  int number() const { return number_; }  // of the line that was read last

 private:
  std::string path_;
  Findings& findings_;
  pv::platform::InputFile file_;
  int number_ = 0;
  bool continues_ = false;  // the last piece had no line end
};

}  // namespace pvfilter
