#include "store/store_folder.h"

#include <algorithm>
#include <optional>
#include <string>

#include "common/output.h"
#include "common/text_search.h"
#include "platform/directory.h"
#include "platform/file.h"
#include "platform/paths.h"
#include "store/store_paths.h"

namespace pv {
namespace {

constexpr std::string_view kFlagText = "This file is a flag file that denotes that this folder has been changed";
constexpr std::string_view kTrees[] = {"/MAILROOT/", "/PUBROOT/", "/FILEROOT/"};

// As spelt: a folder may hold very many messages, which need not be searched for another spelling of the flag.
void write_flag(std::string_view directory, std::string_view name) {
  const std::string path = platform::join_path({directory, name});
  platform::FileReplacement flag(path, platform::temporary_beside(path), platform::FileMode::kBinary,
                                 platform::TargetName::kAsSpelt);
  if (!flag.is_open() || !flag.write(kFlagText)) return;
  [[maybe_unused]] const bool written = flag.commit();
}

bool is_in_a_store_tree(std::string_view path) {
  std::string form(path);
  std::replace(form.begin(), form.end(), '\\', '/');
  return std::any_of(std::begin(kTrees), std::end(kTrees),
                     [&](std::string_view tree) { return contains_nocase(form, tree); });
}

std::string_view parent_of(std::string_view path) {
  return path.substr(0, path.find_last_of("/\\"));
}

}  // namespace

bool CreateStoreFolder(std::string_view path) {
  const bool created = platform::create_directory(path);
  if (is_in_a_store_tree(path)) write_flag(parent_of(path), "_FOLDER.DTY");
  return created;
}

std::int32_t MarkFolderChanged(std::string_view postoffice, std::string_view mailbox, std::string_view folder,
                               std::string_view, std::string_view, int, int) {
  const std::optional<std::string> path = mailbox_folder_path(postoffice, mailbox, folder);
  if (path) write_flag(*path, "_CHANGE.DTY");
  print("Folder=%.*s::Folder Made Dirty to notify clients\n", static_cast<int>(folder.size()), folder.data());
  return 1;
}

}  // namespace pv
