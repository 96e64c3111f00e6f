#include "dns/answer_cache.h"

namespace example {

std::optional<bool> AnswerCache::find(const std::string& name, Time now) {
  const std::lock_guard lock(mutex_);
  const auto found = by_name_.find(name);
  if (found == by_name_.end() || found->second->valid_until <= now) return std::nullopt;
  answers_.splice(answers_.begin(), answers_, found->second);
  return found->second->listed;
}

void AnswerCache::store(const std::string& name, bool listed, Time valid_until) {
  const std::lock_guard lock(mutex_);
  if (const auto old = by_name_.find(name); old != by_name_.end()) {
    answers_.erase(old->second);
    by_name_.erase(old);
  }
  answers_.push_front({name, listed, valid_until});
  by_name_[name] = answers_.begin();
  if (answers_.size() <= most_answers_) return;
  by_name_.erase(answers_.back().name);
  answers_.pop_back();
}

}  // namespace example
