// Copies of word files that are read without "Allow Pattern Caching": an edit takes effect at the next look, and a file
// that has not changed is not read again.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_identity.h"

namespace pv {

// The lines of a word file that can match, as MatchWordFile would read them.
struct WordFileCopy {
  // The lines one after the other, and where each of them ends.
  WordFileCopy(std::string patterns, std::span<const std::size_t> ends);
  WordFileCopy(const WordFileCopy&) = delete;
  WordFileCopy& operator=(const WordFileCopy&) = delete;

  std::string bytes;
  std::vector<std::string_view> lines;  // not empty; parts of `bytes`
};

// Any thread.
class WordFileCopies {
 public:
  // The file as it is now; nullptr when it cannot be opened. The same copy as before when its lines are the same.
  std::shared_ptr<const WordFileCopy> current(const std::string& path);

 private:
  struct Held {
    platform::FileIdentity identity;
    bool settled = false;  // no later change can leave the identity as it is
    std::shared_ptr<const WordFileCopy> copy;
  };
  std::mutex mutex_;
  std::map<std::string, Held, std::less<>> held_;  // guarded by mutex_
};

}  // namespace pv
