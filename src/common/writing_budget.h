// How much of the time may go into something that is useful but must not slow the rest down.
#pragma once

#include <algorithm>
#include <chrono>

namespace pv {

// Allows spells of work that together take at most one `share`th of the time, but for a reserve that gathers while
// nothing is done. Not for several threads at once. The times are those of one steady clock.
class WritingBudget {
 public:
  using Time = std::chrono::steady_clock::time_point;
  using Duration = std::chrono::steady_clock::duration;

  constexpr WritingBudget(int share, Duration reserve) : share_(share), reserve_(reserve), left_(reserve) {}

  bool allows(Time now) {
    gather(now);
    return left_ > Duration::zero();
  }
  void spend(Duration taken, Time now) {
    gather(now);
    left_ -= taken;
  }
  // How long until it allows the next spell; zero when it does now.
  Duration wait(Time now) {
    gather(now);
    return left_ > Duration::zero() ? Duration::zero() : (Duration(1) - left_) * share_;
  }

 private:
  void gather(Time now) {
    if (now <= gathered_) return;
    left_ = std::min(reserve_, left_ + (now - gathered_) / share_);
    gathered_ = now;
  }

  int share_;
  Duration reserve_;
  Duration left_;
  Time gathered_{};
};

}  // namespace pv
