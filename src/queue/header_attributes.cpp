#include "queue/header_attributes.h"

#include <cstddef>
#include <optional>

#include "common/output.h"
#include "common/text_search.h"

namespace pv {

namespace {

constexpr std::size_t kLongestAttributeValue = 1022;  // bytes; a longer one counts as none
constexpr std::string_view kUnquotedEnd = "; \t\r\n";
constexpr std::string_view kParameterEnd = ";\r\n";
constexpr std::string_view kQuotedParameterEnd = ";\r\n\"";
constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

// What follows the first "attribute=". The "=" is searched for, not the name: few lines hold one, and this is asked of
// every line of a part header.
std::optional<std::string_view> text_after_attribute(std::string_view line, std::string_view attribute) {
  for (std::size_t equals = line.find('='); equals != std::string_view::npos; equals = line.find('=', equals + 1)) {
    if (equals < attribute.size()) continue;
    if (equals_nocase(line.substr(equals - attribute.size(), attribute.size()), attribute)) {
      return line.substr(equals + 1);
    }
  }
  return std::nullopt;
}

// The value at the start of a text; nullopt when its quote is not closed.
std::optional<std::string_view> leading_value(std::string_view text) {
  if (!text.starts_with('"')) return text.substr(0, text.find_first_of(kUnquotedEnd));
  const std::size_t closing_quote = text.find('"', 1);
  if (closing_quote == std::string_view::npos) return std::nullopt;
  return text.substr(1, closing_quote - 1);
}

std::string_view without_leading_white_space(std::string_view text) {
  const std::size_t start = text.find_first_not_of(kWhiteSpace);
  return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

}  // namespace

AttributeSearch find_attribute(std::string_view line, std::string_view attribute, AttributeText& output) {
  output.clear();
  const std::optional<std::string_view> rest = text_after_attribute(until_nul(line), attribute);
  if (!rest) return AttributeSearch::kAbsent;
  const std::optional<std::string_view> value = leading_value(*rest);
  const bool taken = value && value->size() <= kLongestAttributeValue && output.assign(*value);
  return taken ? AttributeSearch::kFound : AttributeSearch::kMalformed;
}

bool AttributeValue(std::string_view line, std::string_view attribute, AttributeText& output) {
  const AttributeSearch search = find_attribute(line, attribute, output);
  if (search == AttributeSearch::kMalformed) print_text("No closing quotation for attachment\n");
  return search == AttributeSearch::kFound;
}

bool HeaderParameterValue(std::string_view line, std::string_view parameter, AttributeText& output) {
  const std::string_view text = until_nul(line);
  const std::size_t start = find_nocase(text, parameter);
  if (start == std::string_view::npos) return false;
  std::string_view value = text.substr(start + parameter.size());
  if (value.empty()) return false;

  value = without_leading_white_space(value);
  const bool quoted = value.starts_with('"');
  if (quoted) value.remove_prefix(1);
  output.cut(value.substr(0, value.find_first_of(quoted ? kQuotedParameterEnd : kParameterEnd)));
  return true;
}

}  // namespace pv
