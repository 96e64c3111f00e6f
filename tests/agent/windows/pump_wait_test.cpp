#include "agent/pump_wait.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "platform/windows/message_window.h"

namespace pv {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t kLong = 60'000;  // ms; only a fault lets a wait take that long

TEST(PumpWait, MessagesAreDispatchedUntilTheEventIsSignalled) {
  platform::Event event;
  std::vector<UINT> seen;
  const test::MessageWindow window([&](UINT message) {
    seen.push_back(message);
    if (message == WM_APP + 2) event.signal();
  });
  window.post(WM_APP + 1);
  window.post(WM_APP + 2);
  window.post(WM_APP + 3);
  EXPECT_EQ(pump_wait(&event, kLong), 1);
  EXPECT_THAT(seen, ElementsAre(WM_APP + 1, WM_APP + 2, WM_APP + 3)) << "the queue is emptied first";
}

TEST(PumpWait, ASignalledEventLeavesMessagesWaiting) {
  platform::Event event;
  std::vector<UINT> seen;
  const test::MessageWindow window([&](UINT message) { seen.push_back(message); });
  window.post(WM_APP);
  event.signal();
  EXPECT_EQ(pump_wait(&event, kLong), 1);
  EXPECT_THAT(seen, ElementsAre());
  EXPECT_EQ(pump_wait(&event, 0), 1) << "the time is over after the first message";
  EXPECT_THAT(seen, ElementsAre(WM_APP));
  EXPECT_EQ(pump_wait(&event, 0), 0);
}

TEST(PumpWait, ABusyWindowEndsTheWaitWhenTheTimeIsOver) {
  platform::Event event;
  const test::MessageWindow* self = nullptr;
  const test::MessageWindow window([&](UINT message) { self->post(message); });  // never an empty queue
  self = &window;
  window.post(WM_APP);
  EXPECT_EQ(pump_wait(&event, 50), 1);
}

}  // namespace
}  // namespace pv
