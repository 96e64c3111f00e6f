#include "actions/filtered_headers.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace pv {
namespace {

constexpr std::size_t kHeaderPiece = 4096;  // bytes read at once; a longer line is copied piece by piece

bool copy_header_lines(platform::InputFile& in, NotificationFile& out) {
  bool at_line_start = true;
  while (const std::optional<std::string_view> piece = in.read_line(kHeaderPiece)) {
    if (at_line_start && (piece->front() == '\r' || piece->front() == '\n')) return true;
    if (!out.write(*piece)) return false;
    at_line_start = piece->ends_with('\n');
  }
  return !in.failed();
}

}  // namespace

bool FilteredHeaders::open() {
  return file_.is_open() || file_.open(path_, platform::FileMode::kText);
}

bool FilteredHeaders::copy_to(NotificationFile& out) {
  if (!open()) return false;
  const bool copied = copy_header_lines(file_, out);
  close();
  return copied;
}

}  // namespace pv
