#include "actions/one_line.h"

#include <algorithm>

namespace pv {
namespace {

std::string without(std::string_view text, std::string_view characters) {
  std::string result(text);
  const auto unwanted = [&](char c) { return characters.find(c) != std::string_view::npos; };
  std::replace_if(result.begin(), result.end(), unwanted, ' ');
  return result;
}

}  // namespace

std::string on_one_line(std::string_view text) {
  return without(text, std::string_view("\r\n\0", 3));
}

std::string in_one_column(std::string_view text) {
  return without(text, std::string_view("\t\r\n\0", 4));
}

std::string_view without_line_ends(std::string_view text) {
  return text.substr(0, text.find_last_not_of("\r\n") + 1);
}

}  // namespace pv
