#include "store/store_paths.h"

#include "common/agent_settings.h"
#include "platform/paths.h"

namespace pv {
namespace {

constexpr std::string_view kSeparators = "/\\";

// Dots and blanks alone name this directory, the one above it or, on Windows, one of them in disguise (".. "). A colon
// leads to another stream or drive there.
bool stays_inside(std::string_view level) {
  return level.find_first_not_of(". ") != std::string_view::npos && level.find(':') == std::string_view::npos;
}

bool names_one_directory(std::string_view name) {
  return name.find_first_of(kSeparators) == std::string_view::npos && stays_inside(name);
}

bool levels_stay_inside(std::string_view folder) {
  bool any = false;
  while (!folder.empty()) {
    const std::string_view level = folder.substr(0, folder.find_first_of(kSeparators));
    folder.remove_prefix(level.size() < folder.size() ? level.size() + 1 : level.size());
    if (level.empty()) continue;  // two separators side by side count as one
    if (!stays_inside(level)) return false;
    any = true;
  }
  return any;
}

std::string_view without_outer_separators(std::string_view folder) {
  folder.remove_prefix(folder.find_first_not_of(kSeparators));
  return folder.substr(0, folder.find_last_not_of(kSeparators) + 1);
}

}  // namespace

std::optional<std::string> PostofficeRoot(std::string_view postoffice) {
  const DirectoryText root = mail_root();
  if (root.empty() || !names_one_directory(postoffice)) return std::nullopt;
  return platform::join_path({root, postoffice});
}

std::optional<std::string> mailbox_path(std::string_view postoffice, std::string_view mailbox) {
  const std::optional<std::string> root = PostofficeRoot(postoffice);
  if (!root || !names_one_directory(mailbox)) return std::nullopt;
  return platform::join_path({*root, "MAILROOT", mailbox});
}

std::optional<std::string> mailbox_folder_path(std::string_view postoffice, std::string_view mailbox,
                                               std::string_view folder) {
  const std::optional<std::string> own = mailbox_path(postoffice, mailbox);
  if (!own || !levels_stay_inside(folder)) return std::nullopt;
  return platform::join_path({*own, without_outer_separators(folder)});
}

}  // namespace pv
