#include "whitelist/system_whitelist.h"

#include <cstddef>
#include <string>

#include "common/report_log.h"
#include "platform/settings_store.h"
#include "whitelist/address_patterns.h"

namespace pv {

namespace {

constexpr char kWhiteListKey[] = R"(SOFTWARE\Post Vane\Post Vane\Connectors\SMTP\White List)";
constexpr std::size_t kLongestPattern = 255;  // bytes; longer value names are passed over

bool is_listed(std::string_view address) {
  const auto matches = address.find(':') == std::string_view::npos ? ipv4_pattern_matches : ipv6_pattern_matches;
  bool listed = false;
  platform::for_each_setting_name(kWhiteListKey, [&](std::string_view pattern) {
    listed = pattern.size() <= kLongestPattern && matches(address, pattern);
    return !listed;
  });
  return listed;
}

}  // namespace

bool IsWhitelisted(std::string_view address) {
  if (!is_listed(address)) return false;
  // Outside the walk: the writer reads a setting itself.
  report_write("PV-I0092: " + std::string(address) +
               " is registered in the system whitelist and was therefore excluded from checking\n");
  return true;
}

}  // namespace pv
