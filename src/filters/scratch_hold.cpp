#include "filters/scratch_hold.h"

#include <utility>

#include "filters/compiled_filters.h"

namespace pv {

ScratchHold::ScratchHold() = default;

ScratchHold::ScratchHold(std::shared_ptr<ScratchPool> pool) : pool_(std::move(pool)), scratch_(pool_->take()) {}

ScratchHold::~ScratchHold() {
  give_back();
}

ScratchHold::ScratchHold(ScratchHold&& other) noexcept = default;

ScratchHold& ScratchHold::operator=(ScratchHold&& other) noexcept {
  give_back();
  pool_ = std::move(other.pool_);
  scratch_ = std::move(other.scratch_);
  return *this;
}

void ScratchHold::give_back() noexcept {
  if (scratch_) pool_->give_back(std::move(scratch_));
  pool_.reset();
}

}  // namespace pv
