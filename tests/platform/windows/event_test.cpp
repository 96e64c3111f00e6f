#include "platform/event.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "platform/windows/message_window.h"

namespace pv {
namespace {

using platform::dispatch_one_input;
using platform::Event;
using platform::WaitEnd;
using testing::ElementsAre;

constexpr std::uint32_t kLong = 60'000;  // ms; only a fault lets a wait take that long

TEST(Event, WindowMessagesEndTheWaitAndAreDispatchedOneByOne) {
  std::vector<UINT> seen;
  const test::MessageWindow window([&](UINT message) { seen.push_back(message); });
  Event event;
  window.post(WM_APP + 1);
  window.post(WM_APP + 2);
  EXPECT_EQ(event.wait_or_input(kLong), WaitEnd::kInput);
  EXPECT_TRUE(dispatch_one_input());
  EXPECT_THAT(seen, ElementsAre(WM_APP + 1));
  EXPECT_TRUE(dispatch_one_input());
  EXPECT_FALSE(dispatch_one_input());
  EXPECT_THAT(seen, ElementsAre(WM_APP + 1, WM_APP + 2));
  EXPECT_EQ(event.wait_or_input(0), WaitEnd::kOther) << "nothing is left";
}

TEST(Event, ASignalGoesBeforeWindowMessages) {
  const test::MessageWindow window([](UINT) {});
  Event event;
  window.post(WM_APP);
  event.signal();
  EXPECT_EQ(event.wait_or_input(kLong), WaitEnd::kSignalled);
  EXPECT_EQ(event.wait_or_input(kLong), WaitEnd::kInput) << "the message still waits";
}

TEST(Event, KeysAreTranslatedToCharacters) {
  std::vector<UINT> seen;
  const test::MessageWindow window([&](UINT message) { seen.push_back(message); });
  window.post(WM_KEYDOWN, VK_SPACE);
  while (dispatch_one_input()) continue;
  EXPECT_THAT(seen, ElementsAre(WM_KEYDOWN, WM_CHAR));
}

}  // namespace
}  // namespace pv
