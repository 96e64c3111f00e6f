#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "common/writing_budget.h"
#include "platform/output_capture.h"
#include "platform/settings_store.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using std::chrono::milliseconds;

class CounterWriter : public testing::Test {
 protected:
  CounterWriter() {
    finish_publishing_counters();
    forget_agent_settings();
    settings().update_statistics = 1;
  }
  ~CounterWriter() override {
    finish_publishing_counters();
    forget_agent_settings();
  }
  static std::uint32_t stored(const char* name) { return reg_read_dword_or(kCountersKey, name, 999); }

  const test::ServerTree server;
};

TEST_F(CounterWriter, WritesNothingWhileOffAndReportsTheFirstFailureOnly) {
  server.set_number(kAgentKey, "Activity Log Enabled", 2);
  settings().update_statistics = 0;
  forget_counter_failure_for_test();
  const std::string before = server.read("settings.reg");
  publish_counter(kCountersKey, "SA Total Scans", 3);
  EXPECT_EQ(server.read("settings.reg"), before);
  settings().update_statistics = 2;
  publish_counter(kCountersKey, "SA Total Scans", 3);
  EXPECT_EQ(reg_read_dword_or(kCountersKey, "SA Total Scans", 0), 3U);

  finish_publishing_counters();
  server.refuse_settings_writes();
  platform::OutputCapture output;
  publish_counter(kCountersKey, "SA Total Scans", 4);
  publish_counter(kCountersKey, "SA Detections", 1);
  EXPECT_EQ(output.take(),
            " PV-IXXXX: Unable to save queue statistics for service. The service account may not have permission to "
            "write to the registry path SOFTWARE\\Post Vane\\Post Vane\\Agents\\MTA\\Filters\\MTAFILTER\\Counters, "
            "item SA Total Scans\n");
}

TEST_F(CounterWriter, AnOvertakenNumberIsLeftOut) {
  struct Case {
    const char* what;
    std::vector<std::uint32_t> published;
    std::uint32_t stored;
  };
  const Case cases[] = {
      {"rising", {0, 1, 2}, 2},
      {"one thread was overtaken", {1, 3, 2}, 3},
      {"beyond 32 bits it begins again", {0xFFFFFFFF, 0, 1, 0xFFFFFFFE}, 1},
      {"the first number of a start", {0}, 0},
  };
  for (const Case& c : cases) {
    ASSERT_TRUE(reg_write_dword(kCountersKey, "SA Total Scans", 500));
    for (const std::uint32_t number : c.published) publish_counter(kCountersKey, "SA Total Scans", number);
    finish_publishing_counters();
    EXPECT_EQ(stored("SA Total Scans"), c.stored) << c.what;
  }
}

TEST_F(CounterWriter, AFailedNumberIsWrittenWithTheNext) {
  forget_counter_failure_for_test();
  const std::string original = server.read("settings.reg");
  server.refuse_settings_writes();
  publish_counter(kCountersKey, "SA Total Scans", 4);
  EXPECT_EQ(server.read("settings.reg"), original);
  ASSERT_TRUE(server.remove("settings.reg.lock"));
  publish_counter(kCountersKey, "SA Detections", 1);
  finish_publishing_counters();
  EXPECT_EQ(stored("SA Total Scans"), 4U);
  EXPECT_EQ(stored("SA Detections"), 1U);
}

TEST_F(CounterWriter, MoreNamesThanUsualAreWrittenToo) {
  for (int i = 0; i < 40; ++i) publish_counter(kCountersKey, "Counter " + std::to_string(i), 7);
  finish_publishing_counters();
  for (int i = 0; i < 40; ++i) EXPECT_EQ(stored(("Counter " + std::to_string(i)).c_str()), 7U) << i;
}

TEST_F(CounterWriter, WhatIsPutOffComesByItself) {
  std::uint32_t number = 0;
  const auto behind = [&] { return stored("SA Total Scans") != number; };
  do {
    publish_counter(kCountersKey, "SA Total Scans", ++number);
  } while (number < 100000 && !behind());
  ASSERT_TRUE(behind()) << "writing never took more than its share";
  while (behind()) std::this_thread::yield();  // a failure shows as the test's time limit
}

TEST_F(CounterWriter, AMomentOfRestStoresWhatWasPutOff) {
  std::uint32_t number = 0;
  do {
    publish_counter(kCountersKey, "SA Total Scans", ++number);
  } while (number < 100000 && stored("SA Total Scans") == number);
  store_counters_at_rest();
  EXPECT_EQ(stored("SA Total Scans"), number);
}

class ConcurrentCounterWriter : public CounterWriter {};

TEST_F(ConcurrentCounterWriter, TheHighestNumberIsStoredLast) {
  constexpr int kThreads = 4;
  constexpr std::uint32_t kEach = 300;
  std::atomic<std::uint32_t> number{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      for (std::uint32_t n = 0; n < kEach; ++n) {
        publish_counter(kCountersKey, "DKIM Scans", ++number);
        if (n % 8 == 0) store_counters_at_rest();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  finish_publishing_counters();
  EXPECT_EQ(stored("DKIM Scans"), kThreads * kEach);
}

TEST(WritingBudget, TakesItsShareAndAReserve) {
  const WritingBudget::Time start{std::chrono::hours(1)};
  WritingBudget budget(/*share=*/10, /*reserve=*/milliseconds(20));
  EXPECT_TRUE(budget.allows(start));
  budget.spend(milliseconds(20), start);
  EXPECT_FALSE(budget.allows(start)) << "the reserve is used up";
  EXPECT_TRUE(budget.allows(start + milliseconds(10))) << "a tenth of the time since";
  budget.spend(milliseconds(31), start + milliseconds(10));
  EXPECT_FALSE(budget.allows(start + milliseconds(310)));
  EXPECT_GT(budget.wait(start + milliseconds(310)), milliseconds(0));
  EXPECT_TRUE(budget.allows(start + milliseconds(311)));
  EXPECT_EQ(budget.wait(start + milliseconds(311)), milliseconds(0));
  budget.spend(milliseconds(20), start + std::chrono::hours(1));
  EXPECT_FALSE(budget.allows(start + std::chrono::hours(1))) << "a long rest gathers no more than the reserve";
}

}  // namespace
}  // namespace pv
