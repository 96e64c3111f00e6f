#include "platform/event.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace pv {
namespace {

using platform::Event;
using platform::WaitEnd;

constexpr std::uint32_t kLong = 60'000;  // ms; only a fault lets a wait take that long

TEST(Event, OneSignalEndsOneWait) {
  Event event;
  EXPECT_EQ(event.wait_or_input(0), WaitEnd::kOther);
  event.signal();
  event.signal();
  EXPECT_EQ(event.wait_or_input(0), WaitEnd::kSignalled);
  EXPECT_EQ(event.wait_or_input(1), WaitEnd::kOther) << "two signals without a waiter are one";
  EXPECT_FALSE(platform::dispatch_one_input());
}

TEST(EventConcurrent, HandsOverWhatWasWrittenBefore) {
  Event ping;
  Event pong;
  int turns = 0;  // no lock: the events order the accesses
  std::thread other([&] {
    for (int i = 0; i < 1000; ++i) {
      if (ping.wait_or_input(kLong) == WaitEnd::kSignalled) ++turns;
      pong.signal();
    }
  });
  int in_order = 0;
  for (int i = 0; i < 1000; ++i) {
    ping.signal();
    if (pong.wait_or_input(kLong) == WaitEnd::kSignalled && turns == i + 1) ++in_order;
  }
  other.join();
  EXPECT_EQ(in_order, 1000);
}

TEST(EventConcurrent, ASignalWakesOneOfManyWaiters) {
  Event event;
  Event awake;
  std::atomic<int> woken = 0;
  std::vector<std::thread> waiters;
  for (int i = 0; i < 4; ++i) {
    waiters.emplace_back([&] {
      if (event.wait_or_input(kLong) == WaitEnd::kSignalled) ++woken;
      awake.signal();
    });
  }
  for (int i = 1; i <= 4; ++i) {
    event.signal();
    EXPECT_EQ(awake.wait_or_input(kLong), WaitEnd::kSignalled);
    EXPECT_EQ(woken, i);
  }
  for (std::thread& waiter : waiters) waiter.join();
}

}  // namespace
}  // namespace pv
