// The gate and the reload, with the waits replaced: no test here takes the minute and a half that they may.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "agent/filter_execute.h"
#include "agent/lifecycle.h"
#include "agent/pump_wait.h"
#include "agent/reload_gate.h"
#include "common/registry_access.h"
#include "filters/criteria_keywords.h"
#include "platform/com.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using test::ServerTree;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr char kGateMessage[] =
    "Filters are taking too long to reload and filter executing. This may cause filter instability.\r\n";
constexpr char kReloadMessage[] =
    "Filters are taking too long to execute and are being reloaded. This may cause filter instability.\r\n";
constexpr char kMessage[] = "Subject: a\r\n\r\nbody\r\n";

std::atomic<int> rounds{0};
std::function<void(int round)> in_round;  // set before threads start

std::int32_t counted_wait(platform::Event* event, std::uint32_t timeout_ms) {
  EXPECT_NE(event, nullptr);
  EXPECT_EQ(timeout_ms, 500u);
  const int round = ++rounds;
  if (in_round) in_round(round);
  std::this_thread::yield();
  return 0;
}

class ReloadTest : public testing::Test {
 protected:
  ReloadTest() {
    rounds = 0;
    in_round = nullptr;
    set_pump_wait_for_test(&counted_wait);
    server_.set_number(kAgentKey, "Activity Log Enabled", 1);
    testing::internal::CaptureStdout();
    mark_with("first");
    attach();
  }
  ~ReloadTest() override {
    detach();
    const std::string output = testing::internal::GetCapturedStdout();
    if (HasFailure()) std::fputs(output.c_str(), stdout);  // the failures' own text was caught with it
    set_pump_wait_for_test(nullptr);
  }

  // Two filters that every message meets, each adding a header that names the set: a half-loaded set shows. The action
  // tables are read for each message, so each set has its own.
  void mark_with(const std::string& set) const {
    for (const char* place : {"begin", "end"}) {
      server_.criteria(set + "-" + place, {{kAllMessages, ""}});
      server_.actions(set + "-" + place, {{"ADD_HEADER", "X-" + std::string(place) + "|" + set}});
    }
    server_.filters({set + "-begin", set + "-end"});
  }
  void ask_for_reload() const { server_.set_number(kAgentKey, "Reload", 1); }
  std::string filtered(const char* id = "A.MAI") const {
    server_.queue(id, "", kMessage);
    filter_queued_message(id, "SMTP");
    return server_.message(id);
  }
  std::string log() const {
    std::string text;
    for (const std::string& name : server_.names("logs")) text += server_.read("logs/" + name);
    return text;
  }
  static std::string marked(const std::string& set) {
    return "Subject: a\r\nX-begin: " + set + "\r\nX-end: " + set + "\r\n\r\nbody\r\n";
  }

  ServerTree server_;
};

TEST_F(ReloadTest, HappensOnceForOneRequestAndAtOnceWithoutOtherMessages) {
  EXPECT_EQ(filtered(), marked("first"));
  mark_with("second");
  EXPECT_EQ(filtered(), marked("first")) << "nobody asked for a reload";
  ask_for_reload();
  EXPECT_EQ(filtered(), marked("second"));
  EXPECT_EQ(reg_read_dword_or(kAgentKey, "Reload", 9), 0u);
  mark_with("third");
  EXPECT_EQ(filtered(), marked("second"));
  EXPECT_EQ(rounds, 0);
  EXPECT_THAT(log(), HasSubstr("\tReloading filters due to change.\r\n"));
  EXPECT_THAT(log(), Not(HasSubstr(kReloadMessage)));
}

TEST_F(ReloadTest, WaitsForMessagesInFlightButNotForever) {
  mark_with("second");
  ask_for_reload();
  messages_in_flight = 1;  // another message, besides the one below
  in_round = [](int round) {
    EXPECT_EQ(reload_in_progress, 1) << "new messages are held at the gate";
    if (round == 7) messages_in_flight = 1;
  };
  EXPECT_EQ(filtered(), marked("second"));
  EXPECT_EQ(rounds, 7);
  EXPECT_EQ(reload_in_progress, 0);

  rounds = 0;
  in_round = nullptr;
  messages_in_flight = 1;
  ask_for_reload();
  EXPECT_EQ(filtered(), marked("second"));
  EXPECT_EQ(rounds, kReloadRounds);
  EXPECT_THAT(log(), HasSubstr(kReloadMessage));
  messages_in_flight = 0;
}

TEST_F(ReloadTest, TheGateHoldsAMessageWhileAReloadRuns) {
  reload_in_progress = 1;
  in_round = [](int round) {
    if (round == 3) reload_in_progress = 0;
  };
  EXPECT_EQ(filtered(), marked("first"));
  EXPECT_EQ(rounds, 3);
  EXPECT_THAT(log(), Not(HasSubstr(kGateMessage)));

  rounds = 0;
  in_round = nullptr;
  reload_in_progress = 1;
  EXPECT_EQ(filtered(), marked("first"));
  EXPECT_EQ(rounds, kGateRounds);
  EXPECT_THAT(log(), HasSubstr(kGateMessage));
  reload_in_progress = 0;
}

TEST_F(ReloadTest, AnEmptiedTableEndsFiltering) {
  server_.filters({});
  ask_for_reload();
  EXPECT_EQ(filtered(), kMessage);
  mark_with("again");
  ask_for_reload();
  EXPECT_EQ(filtered(), marked("again"));
}

TEST_F(ReloadTest, ARequestThatCannotBeResetIsRepeated) {
  ask_for_reload();
  server_.refuse_settings_writes();
  EXPECT_EQ(filtered(), marked("first"));
  EXPECT_EQ(reg_read_dword_or(kAgentKey, "Reload", 9), 1u);
  mark_with("second");
  EXPECT_EQ(filtered(), marked("second"));
}

TEST_F(ReloadTest, ComIsInitialisedOnlyAroundMessagesOfScriptFilters) {
  server_.write("conf/FILTERS/CRITERIA/first-end.PVS", "FilterResult = 1");
  ask_for_reload();
  EXPECT_EQ(filtered(), marked("first"));
  EXPECT_EQ(platform::com_initialisations_of_thread(), 0);
}

using ReloadConcurrentTest = ReloadTest;

TEST_F(ReloadConcurrentTest, NoMessageIsLostOrFilteredByAHalfLoadedSet) {
  constexpr int kThreads = 4;
  constexpr int kMessages = 60;
  std::atomic<int> running{kThreads};
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int m = 0; m < kMessages; ++m) {
        const std::string id = "T" + std::to_string(t) + "M" + std::to_string(m);
        const std::string now = filtered(id.c_str());
        if (now != marked("first")) ++wrong;
      }
      --running;
    });
  }
  int reloads = 0;
  while (running > 0) {
    if (reg_read_dword_or(kAgentKey, "Reload", 0) == 0) {
      ++reloads;
      static_cast<void>(reg_write_dword(kAgentKey, "Reload", 1));
    }
    std::this_thread::yield();
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_GT(reloads, 1);
  EXPECT_EQ(messages_in_flight, 0);
  EXPECT_EQ(reload_in_progress, 0);
}

}  // namespace
}  // namespace pv
