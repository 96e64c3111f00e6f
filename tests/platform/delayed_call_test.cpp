#include "platform/delayed_call.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace pv {
namespace {

using platform::DelayedCall;
using std::chrono::hours;
using std::chrono::milliseconds;

std::atomic<int> calls{0};
std::atomic<bool> in_call{false};
std::atomic<bool> may_return{true};
std::atomic<DelayedCall*> asks_again{nullptr};

void count_call() {
  in_call = true;
  while (!may_return) std::this_thread::yield();
  ++calls;
  if (DelayedCall* again = asks_again.exchange(nullptr)) again->request(milliseconds(0));
  in_call = false;
}

// Failures of what follows show as the time limit of the test.
class ConcurrentDelayedCall : public testing::Test {
 protected:
  ConcurrentDelayedCall() { calls = 0; }
  static void wait_for_calls(int number) {
    while (calls < number) std::this_thread::yield();
  }
};

TEST_F(ConcurrentDelayedCall, IsCarriedOutAndMayAskAgain) {
  DelayedCall delayed(&count_call);
  asks_again = &delayed;
  EXPECT_TRUE(delayed.request(milliseconds(1)));
  wait_for_calls(2);
}

TEST_F(ConcurrentDelayedCall, ALaterRequestTakesTheFirstOnesPlace) {
  DelayedCall delayed(&count_call);
  EXPECT_TRUE(delayed.request(hours(1)));
  EXPECT_TRUE(delayed.request(milliseconds(0)));
  wait_for_calls(1);
  EXPECT_TRUE(delayed.request(hours(1)));
  delayed.cancel();
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(delayed.request(milliseconds(0))) << "after a cancellation";
  wait_for_calls(2);
}

TEST_F(ConcurrentDelayedCall, TheEndWaitsForACallUnderWay) {
  may_return = false;
  std::thread releases;
  {
    DelayedCall delayed(&count_call);
    EXPECT_TRUE(delayed.request(milliseconds(0)));
    while (!in_call) std::this_thread::yield();
    releases = std::thread([] { may_return = true; });
  }
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(in_call);
  releases.join();
}

}  // namespace
}  // namespace pv
