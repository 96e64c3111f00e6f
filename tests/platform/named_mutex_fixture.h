// A mutex of the test's own name.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "platform/environment.h"
#include "platform/named_mutex.h"

namespace pv::test {

inline constexpr std::chrono::milliseconds kAtOnce{0};
inline constexpr std::chrono::minutes kLong{1};  // only a fault lets a wait take that long

class NamedMutexTest : public testing::Test {
 protected:
  ~NamedMutexTest() override;  // takes away what a mutex leaves in the system; defined for each

  const std::string name_ = "test." + std::to_string(platform::process_id());
  const std::string other_name_ = name_ + "-";
};

inline bool locked_by_another_thread(platform::NamedMutex& mutex, std::chrono::milliseconds limit) {
  bool locked = false;
  std::thread([&] {
    locked = mutex.lock_for(limit);
    if (locked) mutex.unlock();
  }).join();
  return locked;
}

}  // namespace pv::test
