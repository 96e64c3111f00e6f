#include "actions/multipart.h"

#include <cstddef>
#include <optional>

#include "common/fields.h"
#include "common/text_search.h"

namespace pv {
namespace {

constexpr std::size_t kLongestBoundary = 255;  // characters
constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kAttribute = "boundary";

std::string_view without_leading_blanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// What stands behind `boundary=`, without the quotes.
std::optional<std::string_view> attribute_value(std::string_view line) {
  const std::size_t name = find_nocase(line, kAttribute);
  if (name == std::string_view::npos) return std::nullopt;
  std::string_view rest = without_leading_blanks(line.substr(name + kAttribute.size()));
  if (!rest.starts_with('=')) return std::nullopt;
  rest = without_leading_blanks(rest.substr(1));
  if (!rest.starts_with('"')) return rest.substr(0, rest.find_first_of("; \t\r\n"));
  const std::size_t closing = rest.find('"', 1);
  if (closing == std::string_view::npos) return std::nullopt;
  return rest.substr(1, closing - 1);
}

// A value that was folded away from its `boundary=`: a quoted text of which no attribute's name stands before.
std::optional<std::string_view> lone_quoted_text(std::string_view line) {
  if (line.substr(0, line.find('"')).find('=') != std::string_view::npos) return std::nullopt;
  return find_field(line, "\"", 2);
}

}  // namespace

bool MultipartHeader::take_boundary(std::string_view line) {
  std::optional<std::string_view> value = attribute_value(line);
  if (!value && expected_) value = lone_quoted_text(line);
  if (!value || value->empty() || value->size() > kLongestBoundary) return false;
  boundary_ = *value;
  return true;
}

void MultipartHeader::take(std::string_view line) {
  const bool folded = line.starts_with(' ') || line.starts_with('\t');
  if (folded && expected_) take_boundary(line);
  expected_ = false;
  if (!starts_with_nocase(line, "Content-Type: multipart")) return;
  multipart_ = true;
  expected_ = !take_boundary(line);
}

Marker PartMarkers::find(std::string_view line) const {
  if (!line.starts_with(start_)) return Marker::kNone;
  if (is_blank(line.substr(start_.size()))) return Marker::kStart;
  return line.starts_with(end_) && is_blank(line.substr(end_.size())) ? Marker::kEnd : Marker::kNone;
}

}  // namespace pv
