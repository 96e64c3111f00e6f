#include "whitelist/outbound_whitelist.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "common/agent_settings.h"
#include "common/fields.h"
#include "common/files.h"
#include "common/registry_access.h"
#include "platform/directory.h"
#include "platform/paths.h"

namespace pv {

namespace {

constexpr int kAddressParts = 4;
constexpr std::size_t kLongestName = 65;           // bytes of an address name
constexpr std::size_t kLongestRelativePath = 255;  // bytes below the configuration directory
using AddressPart = BoundedText<20>;
using PathText = BoundedText<512>;

// The first `parts` dotted parts of an address of four. Parts beyond the fourth are empty; the walk ends when the name
// is too long, so that no setting makes it run for long.
std::string leading_parts(std::string_view address, std::uint32_t parts) {
  std::string name;
  if (count_fields(address, ".") != kAddressParts) return name;
  for (std::uint32_t number = 1; number <= parts && name.size() <= kLongestName; ++number) {
    if (number > 1) name += '.';
    AddressPart part;
    if (number <= kAddressParts) split_field(address, ".", static_cast<int>(number), part);
    name.append(part.view());
  }
  return name;
}

std::string address_name(std::string_view address) {
  const std::uint32_t parts = reg_read_dword_or(kSmtpKey, "Whitelist Outbound IPAddress Mode", 0);
  std::string name = parts > 0 ? leading_parts(address, parts) : std::string(address);
  std::replace(name.begin(), name.end(), ':', '-');
  return name;
}

// Addresses and postoffices come from a command file: none may lead out of its directory, nor match any file there.
bool is_plain_name(std::string_view name) {
  constexpr std::string_view kSpecial("/\\*?\0", 5);
  return name != "." && name != ".." && name.find_first_of(kSpecial) == std::string_view::npos;
}

// The marker file's path below the configuration directory.
std::string relative_marker_path(std::string_view name, std::string_view postoffice, std::string_view mailbox) {
  std::string marker = platform::join_path({"Connections", "Whitelist", std::string(name) + ".tab"});
  if (postoffice.empty()) return marker;
  if (mailbox.empty()) return platform::join_path({"", "Postoffices", postoffice, marker});
  return platform::join_path({"", "Postoffices", postoffice, "Mailboxes", mailbox, marker});
}

void create_connection_directories(std::string_view configuration) {
  PathText path;
  if (!path.assign(configuration)) return;
  for (const std::string_view name : {"Connections", "Spam"}) {
    if (!append_path(path, name)) return;
    // Mostly there already, and not needed for the answer.
    [[maybe_unused]] const bool created = platform::create_directory(path);
  }
}

// nullopt when the whole path does not fit.
std::optional<PathText> path_below(std::string_view configuration, std::string_view relative) {
  PathText path;
  if (configuration.empty()) {
    if (relative.front() == platform::kPathSeparator) relative.remove_prefix(1);  // would start at the root
    return path.assign(relative) ? std::optional(path) : std::nullopt;
  }
  if (!path.assign(configuration) || !append_path(path, relative)) return std::nullopt;
  return path;
}

}  // namespace

bool append_path(BoundedText<512>& directory, std::string_view name) {
  if (directory.empty()) return true;
  const char last = directory.view().back();
  if (last != '\\' && last != '/') directory.append_cut({&platform::kPathSeparator, 1});
  return directory.append_cut(name) == 0;
}

bool IsOutboundWhiteListed(std::string_view address, std::string_view postoffice, std::string_view mailbox) {
  if (address.empty() || reg_read_dword_or(kSmtpKey, "Whitelist Outbound IPAddresses", 0) == 0) return false;
  const std::string name = address_name(address);
  if (name.size() > kLongestName) return false;
  if (!is_plain_name(name) || !is_plain_name(postoffice) || !is_plain_name(mailbox)) return false;

  const std::string_view configuration = settings().whitelist_configuration_directory;
  if (postoffice.empty()) create_connection_directories(configuration);
  const std::string relative = relative_marker_path(name, postoffice, mailbox);
  if (relative.size() > kLongestRelativePath) return false;
  const std::optional<PathText> path = path_below(configuration, relative);
  return path && file_exists(*path);
}

}  // namespace pv
