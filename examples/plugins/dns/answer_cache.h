// What name servers said, for as long as they said it holds.
#pragma once

#include <chrono>
#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

namespace example {

// Bounded: when it is full, the answer that was asked for the longest time ago makes room. Any thread.
class AnswerCache {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit AnswerCache(std::size_t most_answers) : most_answers_(most_answers) {}

  // Whether a name is listed, when that is known at `now`.
  std::optional<bool> find(const std::string& name, Time now);
  void store(const std::string& name, bool listed, Time valid_until);

 private:
  struct Answer {
    std::string name;
    bool listed;
    Time valid_until;
  };
  const std::size_t most_answers_;
  std::mutex mutex_;
  std::list<Answer> answers_;  // the one asked for last in front; guarded by mutex_, as what follows
  std::unordered_map<std::string, std::list<Answer>::iterator> by_name_;
};

}  // namespace example
