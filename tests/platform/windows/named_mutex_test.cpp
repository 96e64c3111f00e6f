#include "platform/named_mutex.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "platform/named_mutex_fixture.h"
#include "platform/windows/child_process.h"

namespace pv {

test::NamedMutexTest::~NamedMutexTest() = default;  // the system takes it away with its last handle

namespace {

using platform::NamedMutex;
using std::chrono::milliseconds;
using test::kAtOnce;
using test::kLong;
using test::NamedMutexTest;

TEST_F(NamedMutexTest, TakesOverFromADeadProcess) {
  const std::string event_name = name_ + ".locked";
  const HANDLE locked = ::CreateEventA(nullptr, TRUE, FALSE, event_name.c_str());
  ASSERT_NE(locked, nullptr);
  NamedMutex mutex(name_);
  const test::ChildProcess child("hold " + name_ + " " + event_name);
  EXPECT_EQ(::WaitForSingleObject(locked, 60'000), WAIT_OBJECT_0);
  EXPECT_FALSE(mutex.lock_for(milliseconds(1)));
  child.kill();
  EXPECT_TRUE(mutex.lock_for(kLong));
  EXPECT_FALSE(mutex.lock_for(kAtOnce)) << "held as usual";
  mutex.unlock();
  EXPECT_EQ(child.exit_status(), 9U);
  ::CloseHandle(locked);
}

TEST_F(NamedMutexTest, TheHandleIsTheSystemsMutexOfThatName) {
  NamedMutex mutex(name_);
  const HANDLE named = ::OpenMutexA(SYNCHRONIZE, FALSE, name_.c_str());
  ASSERT_NE(named, nullptr);
  EXPECT_EQ(::WaitForSingleObject(mutex.native_handle(), 0), WAIT_OBJECT_0);
  EXPECT_FALSE(test::locked_by_another_thread(mutex, kAtOnce));
  EXPECT_TRUE(::ReleaseMutex(named));
  EXPECT_TRUE(test::locked_by_another_thread(mutex, kAtOnce));
  ::CloseHandle(named);
}

TEST_F(NamedMutexTest, ANameOfSomethingElseGivesAMutexOfThisObjectAlone) {
  const HANDLE event = ::CreateEventA(nullptr, FALSE, FALSE, name_.c_str());
  ASSERT_NE(event, nullptr);
  NamedMutex mutex(name_);
  EXPECT_TRUE(mutex.lock_for(kAtOnce));
  mutex.unlock();
  ::CloseHandle(event);
}

}  // namespace
}  // namespace pv
