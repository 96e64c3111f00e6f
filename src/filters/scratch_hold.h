// A message's hold on what its texts are matched with.
#pragma once

#include <memory>

namespace pv {

struct MatchScratch;
class ScratchPool;

// Takes it out of a pool, and puts it back at the end of the message.
class ScratchHold {
 public:
  ScratchHold();  // holds none
  explicit ScratchHold(std::shared_ptr<ScratchPool> pool);
  ~ScratchHold();
  ScratchHold(ScratchHold&& other) noexcept;
  ScratchHold& operator=(ScratchHold&& other) noexcept;

  bool holds_one_of(const std::shared_ptr<ScratchPool>& pool) const { return pool_ == pool; }
  MatchScratch& operator*() const { return *scratch_; }

 private:
  void give_back() noexcept;

  std::shared_ptr<ScratchPool> pool_;  // lives on while a message uses a set that was replaced
  std::unique_ptr<MatchScratch> scratch_;
};

}  // namespace pv
