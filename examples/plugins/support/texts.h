// The texts that go between the agent and a plug-in.
#pragma once

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace example {

// What stands between "<NAME>" and "</NAME>" in a request; nullopt when it has no such element.
inline std::optional<std::string_view> element(std::string_view request, const std::string& name) {
  const std::string open = "<" + name + ">";
  const std::string_view::size_type start = request.find(open);
  if (start == std::string_view::npos) return std::nullopt;
  const std::string_view rest = request.substr(start + open.size());
  const std::string_view::size_type end = rest.find("</" + name + ">");
  if (end == std::string_view::npos) return std::nullopt;
  return rest.substr(0, end);
}

// Writes a text into a buffer of the agent, cut to what fits, with its terminating zero. Returns its length.
inline std::size_t fill(char* buffer, std::size_t buffer_size, std::string_view text) {
  const std::size_t length = std::min(text.size(), buffer_size - 1);
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
  return length;
}

}  // namespace example
