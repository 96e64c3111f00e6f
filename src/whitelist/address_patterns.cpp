#include "whitelist/address_patterns.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace pv {

namespace {

constexpr std::size_t kGroups = 8;
constexpr std::size_t kMostDigits = 4;  // of one group

struct Group {
  std::uint16_t value = 0;
  bool any = false;
};

struct GroupList {
  std::array<Group, kGroups> groups;
  std::size_t count = 0;
};

void skip_dotted_part(std::string_view& text) {
  text.remove_prefix(std::min(text.find('.'), text.size()));
}

std::optional<Group> read_group(std::string_view text, bool wildcards) {
  if (wildcards && text == "*") return Group{0, true};
  if (text.empty() || text.size() > kMostDigits) return std::nullopt;
  Group group;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, group.value, 16);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return group;
}

// Reads groups separated by ":"; the empty text has none. nullopt when one is no group or there are more than eight.
std::optional<GroupList> read_groups(std::string_view text, bool wildcards) {
  GroupList list;
  while (!text.empty()) {
    const std::size_t colon = std::min(text.find(':'), text.size());
    const std::optional<Group> group = read_group(text.substr(0, colon), wildcards);
    if (!group || list.count == kGroups) return std::nullopt;
    list.groups[list.count++] = *group;
    if (colon + 1 == text.size()) return std::nullopt;  // a separator that separates nothing
    text.remove_prefix(std::min(colon + 1, text.size()));
  }
  return list;
}

// The eight groups of an address or a pattern.
std::optional<std::array<Group, kGroups>> read_address(std::string_view text, bool wildcards) {
  const std::size_t gap = text.find("::");
  if (gap == std::string_view::npos) {
    const std::optional<GroupList> list = read_groups(text, wildcards);
    if (!list || list->count != kGroups) return std::nullopt;
    return list->groups;
  }
  if (text.find("::", gap + 1) != std::string_view::npos) return std::nullopt;

  const std::optional<GroupList> head = read_groups(text.substr(0, gap), wildcards);
  const std::optional<GroupList> tail = read_groups(text.substr(gap + 2), wildcards);
  if (!head || !tail || head->count + tail->count >= kGroups) return std::nullopt;
  std::array<Group, kGroups> groups = head->groups;
  std::copy_backward(tail->groups.begin(), tail->groups.begin() + tail->count, groups.end());
  return groups;
}

}  // namespace

bool ipv4_pattern_matches(std::string_view address, std::string_view pattern) {
  if (address.empty()) return false;
  while (!address.empty() && !pattern.empty()) {
    if (address.front() == pattern.front()) {
      address.remove_prefix(1);
      pattern.remove_prefix(1);
    } else if (pattern.front() == '*') {
      skip_dotted_part(address);
      skip_dotted_part(pattern);
    } else {
      return false;
    }
  }
  return address.empty() && pattern.empty();
}

bool ipv6_pattern_matches(std::string_view address, std::string_view pattern) {
  const auto address_groups = read_address(address, false);
  const auto pattern_groups = read_address(pattern, true);
  if (!address_groups || !pattern_groups) return false;
  return std::equal(pattern_groups->begin(), pattern_groups->end(), address_groups->begin(),
                    [](const Group& wanted, const Group& found) { return wanted.any || wanted.value == found.value; });
}

}  // namespace pv
