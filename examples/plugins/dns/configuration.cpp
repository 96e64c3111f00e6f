#include "dns/configuration.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>

namespace example {
namespace {

constexpr std::size_t kLongestName = 253;  // bytes of a name in the DNS
constexpr std::size_t kLongestLabel = 63;

bool is_name_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}

bool is_host_name(std::string_view name) {
  std::size_t label = 0;
  for (const char c : name) {
    if (c == '.' && label > 0) {
      label = 0;
    } else if (!is_name_character(c) || ++label > kLongestLabel) {
      return false;
    }
  }
  return label > 0;
}

std::optional<std::array<int, 4>> address_parts(std::string_view address) {
  std::array<int, 4> parts{};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const char* const end = address.data() + address.size();
    const auto [after, error] = std::from_chars(address.data(), end, parts[i]);
    const bool last = i + 1 == parts.size();
    if (error != std::errc() || parts[i] < 0 || parts[i] > 255) return std::nullopt;
    if (last ? after != end : after == end || *after != '.') return std::nullopt;
    if (!last) address.remove_prefix(static_cast<std::size_t>(after - address.data()) + 1);
  }
  return parts;
}

std::string host_name(std::string_view host) {
  host.remove_prefix(host.rfind('@') + 1);  // npos + 1 is 0
  host = host.substr(0, host.find(':'));
  std::string name(host);
  for (char& c : name) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  if (name.ends_with('.')) name.pop_back();
  return name.starts_with("www.") ? name.substr(4) : name;
}

std::string host_question(std::string_view host) {
  const std::string name = host_name(host);
  return is_host_name(name) && !address_parts(name) ? name : "";
}

std::string address_question(std::string_view address) {
  const auto parts = address_parts(address);
  if (!parts) return {};
  std::string reversed;
  for (int i = 3; i >= 0; --i) {
    reversed += std::to_string((*parts)[static_cast<std::size_t>(i)]);
    if (i > 0) reversed += '.';
  }
  return reversed;
}

void take_line(const std::string& line, Configuration& configuration) {
  std::istringstream fields(line);
  std::string what;
  std::string value;
  if (!(fields >> what >> value)) return;
  if (what == "host") configuration.zones.push_back({ZoneKind::kHost, value});
  if (what == "address") configuration.zones.push_back({ZoneKind::kAddress, value});
  int number = 0;
  const auto [after, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  const bool is_time = error == std::errc() && number >= 1 && number <= 60000;
  if (what == "timeout" && is_time) configuration.timeout_ms = number;
}

}  // namespace

Configuration read_configuration(const std::string& path) {
  Configuration configuration;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) take_line(line, configuration);
  return configuration;
}

std::string question(const Zone& zone, std::string_view host, std::string_view address) {
  std::string name = zone.kind == ZoneKind::kHost ? host_question(host) : address_question(address);
  if (name.empty() || name.size() + 1 + zone.name.size() > kLongestName) return {};
  return name.append(".").append(zone.name);
}

}  // namespace example
