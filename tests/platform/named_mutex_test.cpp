#include "platform/named_mutex.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

#include "platform/event.h"
#include "platform/named_mutex_fixture.h"

namespace pv {
namespace {

using platform::NamedMutex;
using std::chrono::milliseconds;
using test::kAtOnce;
using test::kLong;
using test::locked_by_another_thread;
using test::NamedMutexTest;
using NamedMutexConcurrent = NamedMutexTest;

TEST_F(NamedMutexTest, IsOneLockForAllObjectsOfItsName) {
  NamedMutex mutex(name_);
  NamedMutex same(name_);
  NamedMutex other(other_name_);
  ASSERT_TRUE(mutex.lock_for(kAtOnce));
  EXPECT_FALSE(mutex.lock_for(milliseconds(1))) << "not recursive";
  EXPECT_FALSE(locked_by_another_thread(same, milliseconds(1)));
  EXPECT_FALSE(locked_by_another_thread(same, milliseconds(-1)));
  EXPECT_TRUE(locked_by_another_thread(other, kAtOnce));
  mutex.unlock();
  EXPECT_TRUE(locked_by_another_thread(same, milliseconds::max()));
}

TEST_F(NamedMutexTest, TakesOverFromADeadThread) {
  for (const std::string& name : {name_, std::string("no name, hence nothing to share")}) {
    NamedMutex mutex(name);
    std::thread([&] { EXPECT_TRUE(mutex.lock_for(kAtOnce)); }).join();
    EXPECT_TRUE(mutex.lock_for(kLong));
    mutex.unlock();
    EXPECT_TRUE(locked_by_another_thread(mutex, kAtOnce)) << "as usable as before";
  }
}

TEST_F(NamedMutexTest, AnInvalidNameGivesAMutexOfThisObjectAlone) {
  for (const std::string& name : {std::string(), std::string("a/b"), std::string("a\0b", 3), std::string(64, 'a')}) {
    NamedMutex mutex(name);
    NamedMutex other(name);
    EXPECT_TRUE(mutex.lock_for(kAtOnce)) << name;
    EXPECT_TRUE(locked_by_another_thread(other, kAtOnce)) << name;
    EXPECT_NE(mutex.native_handle(), nullptr);
    mutex.unlock();
  }
}

TEST_F(NamedMutexConcurrent, ThreadsExcludeEachOther) {
  NamedMutex mutex(name_);
  int count = 0;
  std::array<std::thread, 4> threads;
  for (std::thread& thread : threads) {
    thread = std::thread([&] {
      for (int turn = 0; turn < 2000; ++turn) {
        ASSERT_TRUE(mutex.lock_for(kLong));
        ++count;
        mutex.unlock();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 8000);
}

constexpr std::uint32_t kLong_ms = milliseconds(kLong).count();

TEST_F(NamedMutexConcurrent, AHolderIsNotDisturbedByThoseWhoGiveUp) {
  NamedMutex mutex(name_);
  // No std::latch: MinGW's may sleep through its end.
  platform::Event held;
  platform::Event given_up;
  bool still_locked = false;
  std::thread holder([&] {
    if (!mutex.lock_for(kLong)) ADD_FAILURE() << "not locked";
    held.signal();
    given_up.wait_or_input(kLong_ms);
    still_locked = !locked_by_another_thread(mutex, kAtOnce);
    mutex.unlock();
  });
  held.wait_or_input(kLong_ms);
  EXPECT_FALSE(mutex.lock_for(milliseconds(1)));
  given_up.signal();
  holder.join();
  EXPECT_TRUE(still_locked);
  EXPECT_TRUE(mutex.lock_for(kAtOnce));
  mutex.unlock();
}

}  // namespace
}  // namespace pv
