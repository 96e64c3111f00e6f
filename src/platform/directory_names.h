// The entries of one directory, and the entry of one path.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/directory.h"

namespace pv::platform {

class DirectoryNames {
 public:
  // `directory` is in the system's form; empty for the current one.
  explicit DirectoryNames(const std::string& directory);
  ~DirectoryNames();
  DirectoryNames(const DirectoryNames&) = delete;
  DirectoryNames& operator=(const DirectoryNames&) = delete;

  bool is_open() const;
  // The next name but "." and "..", in no order, valid until the next call; nullptr at the end, when reading fails, and
  // when the directory is not open.
  const char* next();
  // The entry that next() named last; nullopt for one that has gone meanwhile, and for a link that leads nowhere.
  std::optional<DirectoryEntry> describe() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// The entry of a path without wildcards.
std::optional<DirectoryEntry> entry_at(std::string_view path);

// Creates one directory; `path` is in the system's form.
[[nodiscard]] bool make_directory(const std::string& path);

}  // namespace pv::platform
