#include "queue/addresses.h"

#include <optional>

namespace pv {

namespace {

// What stands between the first ":" and the next "]"; nullopt when one of them is missing.
std::optional<std::string_view> bracketed_address(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const std::size_t bracket = text.find(']', colon);
  if (bracket == std::string_view::npos) return std::nullopt;
  return text.substr(colon + 1, bracket - colon - 1);
}

}  // namespace

bool ExtractAddress(std::string_view text, BoundedText<2048>& address) {
  const std::optional<std::string_view> found = bracketed_address(text);
  if (found) {
    address.cut(*found);
    return true;
  }
  const std::size_t colon = text.find(':');
  address.cut(colon == std::string_view::npos ? text : text.substr(colon));
  return false;
}

void BareSenderAddress(std::string_view text, BoundedText<1024>& address) {
  address.cut(bracketed_address(text).value_or(std::string_view()));
}

bool StripAddressType(std::string_view text, BoundedText<512>& address) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    address.cut(text);
    return false;
  }
  std::string_view rest = text.substr(colon + 1);
  if (!rest.empty()) rest.remove_suffix(1);
  address.cut(rest);
  return true;
}

}  // namespace pv
