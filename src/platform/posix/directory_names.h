// The names in one directory.
#pragma once

#include <dirent.h>

#include <string>

namespace pv::platform {

class DirectoryNames {
 public:
  explicit DirectoryNames(const std::string& directory);
  ~DirectoryNames();
  DirectoryNames(const DirectoryNames&) = delete;
  DirectoryNames& operator=(const DirectoryNames&) = delete;

  bool is_open() const { return stream_ != nullptr; }
  // For the *at() functions; owned by this object.
  int descriptor() const;
  // The next name but "." and "..", in no order, valid until the next call; nullptr at the end, when reading fails, and
  // when the directory is not open.
  const char* next();

 private:
  DIR* stream_;
};

}  // namespace pv::platform
