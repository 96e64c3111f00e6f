#include "agent/pump_wait.h"

#include <gtest/gtest.h>

#include <thread>

namespace pv {
namespace {

TEST(PumpWait, EndsAtOnceWithoutAnEvent) {
  EXPECT_EQ(pump_wait(nullptr, 60000), 0);
}

TEST(PumpWait, GivesZeroWhenTheTimeRunsOut) {
  platform::Event event;
  EXPECT_EQ(pump_wait(&event, 1), 0);
}

TEST(PumpWaitConcurrent, OneSignalEndsOneWait) {
  platform::Event event;
  std::thread signaller([&] { event.signal(); });
  EXPECT_EQ(pump_wait(&event, 60000), 1);
  signaller.join();
  EXPECT_EQ(pump_wait(&event, 1), 0) << "the event resets itself";
}

}  // namespace
}  // namespace pv
