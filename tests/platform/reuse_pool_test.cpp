#include "platform/reuse_pool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace pv {
namespace {

struct Held {
  std::atomic<int> users{0};
};

TEST(ReusePool, GivesAThreadBackWhatItUsedLast) {
  platform::ReusePool<Held> pool;
  EXPECT_EQ(pool.take(), nullptr);
  auto first = std::make_unique<Held>();
  auto last = std::make_unique<Held>();
  const Held* const expected = first.get();
  pool.give_back(std::move(first));
  pool.give_back(std::move(last));
  const std::unique_ptr<Held> taken = pool.take();
  EXPECT_EQ(taken.get(), expected);
  EXPECT_NE(pool.take(), nullptr);
  EXPECT_EQ(pool.take(), nullptr);
}

TEST(ReusePoolConcurrent, NothingIsHeldByTwo) {
  platform::ReusePool<Held> pool;
  std::atomic<int> shared{0};
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 2000; ++i) {
        std::unique_ptr<Held> held = pool.take();
        if (held == nullptr) held = std::make_unique<Held>();
        if (held->users.fetch_add(1) != 0) ++shared;
        held->users.fetch_sub(1);
        pool.give_back(std::move(held));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  pool.clear();
  EXPECT_EQ(shared, 0);
  EXPECT_EQ(pool.take(), nullptr);
}

}  // namespace
}  // namespace pv
