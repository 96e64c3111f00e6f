#include "platform/named_mutex.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <latch>
#include <string>
#include <thread>

namespace pv {
namespace {

namespace fs = std::filesystem;
using platform::NamedMutex;
using std::chrono::milliseconds;

constexpr milliseconds kAtOnce{0};
constexpr std::chrono::minutes kLong{1};  // only a fault lets a wait take that long

class NamedMutexTest : public testing::Test {
 protected:
  ~NamedMutexTest() override { fs::remove(object_); }

  const std::string name_ = "test." + std::to_string(::getpid());
  const fs::path object_ = "/dev/shm/pvmtafilter-1-" + std::to_string(::geteuid()) + "-" + name_;
};
using NamedMutexConcurrent = NamedMutexTest;

bool locked_by_another_thread(NamedMutex& mutex, milliseconds limit) {
  bool locked = false;
  std::thread([&] {
    locked = mutex.lock_for(limit);
    if (locked) mutex.unlock();
  }).join();
  return locked;
}

// One process that ran `work` and ended with its result as the exit status.
template <typename Work>
pid_t start_process(const Work& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

int exit_status(pid_t child) {
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return status;
}

TEST_F(NamedMutexTest, IsOneLockForAllObjectsOfItsName) {
  NamedMutex mutex(name_);
  NamedMutex same(name_);
  NamedMutex other(name_ + "-");
  fs::remove(object_.string() + "-");
  ASSERT_TRUE(mutex.lock_for(kAtOnce));
  EXPECT_FALSE(mutex.lock_for(milliseconds(1))) << "not recursive";
  EXPECT_FALSE(locked_by_another_thread(same, milliseconds(1)));
  EXPECT_FALSE(locked_by_another_thread(same, milliseconds(-1)));
  EXPECT_TRUE(locked_by_another_thread(other, kAtOnce));
  mutex.unlock();
  EXPECT_TRUE(locked_by_another_thread(same, milliseconds::max()));
  struct stat status {};
  ASSERT_EQ(::stat(object_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U) << "nobody else can hold it";
}

TEST_F(NamedMutexTest, TakesOverFromADeadThread) {
  for (const std::string& name : {name_, std::string("no name, hence no shared memory")}) {
    NamedMutex mutex(name);
    std::thread([&] { EXPECT_TRUE(mutex.lock_for(kAtOnce)); }).join();
    EXPECT_TRUE(mutex.lock_for(kLong));
    mutex.unlock();
    EXPECT_TRUE(locked_by_another_thread(mutex, kAtOnce)) << "as usable as before";
  }
}

TEST_F(NamedMutexTest, TakesOverFromADeadProcess) {
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const pid_t child = start_process([&] {
    NamedMutex mutex(name_);
    const char locked = mutex.lock_for(kLong) ? 'y' : 'n';
    if (::write(pipe[1], &locked, 1) == 1) ::pause();
    return 1;
  });
  char locked = 'n';
  ASSERT_EQ(::read(pipe[0], &locked, 1), 1);
  EXPECT_EQ(locked, 'y');
  NamedMutex mutex(name_);
  EXPECT_FALSE(mutex.lock_for(milliseconds(1)));
  ::kill(child, SIGKILL);
  EXPECT_TRUE(mutex.lock_for(kLong));
  mutex.unlock();
  EXPECT_EQ(exit_status(child), SIGKILL);
  ::close(pipe[0]);
  ::close(pipe[1]);
}

// Each process makes the mutex for itself, the first one anew.
TEST_F(NamedMutexTest, ProcessesExcludeEachOther) {
  constexpr int kProcesses = 4;
  constexpr int kTurns = 5000;
  void* const shared = ::mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(shared, MAP_FAILED);
  auto* const count = static_cast<volatile int*>(shared);
  std::array<pid_t, kProcesses> children{};
  for (pid_t& child : children) {
    child = start_process([&] {
      NamedMutex mutex(name_);
      for (int turn = 0; turn < kTurns; ++turn) {
        if (!mutex.lock_for(kLong)) return 1;
        *count = *count + 1;
        mutex.unlock();
      }
      return 0;
    });
  }
  for (const pid_t child : children) EXPECT_EQ(exit_status(child), 0);
  EXPECT_EQ(*count, kProcesses * kTurns);
  ::munmap(shared, sizeof(int));
}

TEST_F(NamedMutexTest, AnInvalidNameGivesAMutexOfThisObjectAlone) {
  for (const std::string& name : {std::string(), std::string("a/b"), std::string("a\0b", 3), std::string(64, 'a')}) {
    NamedMutex mutex(name);
    NamedMutex other(name);
    EXPECT_TRUE(mutex.lock_for(kAtOnce)) << name;
    EXPECT_TRUE(other.lock_for(kAtOnce)) << name;
    EXPECT_NE(mutex.native_handle(), nullptr);
    other.unlock();
    mutex.unlock();
  }
}

// Anybody may create files beside the mutexes; a lock of theirs would make report lines drop.
TEST_F(NamedMutexTest, TrustsNoObjectThatIsNotItsOwn) {
  { const NamedMutex own(name_); }
  const auto size = fs::file_size(object_);
  fs::remove(object_);
  const auto put_file = [&](std::uintmax_t bytes, fs::perms rights) {
    std::ofstream(object_).flush();
    fs::resize_file(object_, bytes);
    fs::permissions(object_, rights);
  };
  const auto owner_only = fs::perms::owner_read | fs::perms::owner_write;
  for (const char* fault : {"too short", "not a mutex", "open to others", "a link", "a directory"}) {
    const std::string_view what = fault;
    if (what == "too short") put_file(0, owner_only);
    if (what == "not a mutex") put_file(size, owner_only);
    if (what == "open to others") put_file(size, owner_only | fs::perms::others_write);
    if (what == "a link") fs::create_symlink("nothing", object_);
    if (what == "a directory") fs::create_directory(object_);
    NamedMutex mutex(name_);
    EXPECT_TRUE(mutex.lock_for(kAtOnce)) << what;
    mutex.unlock();
    fs::remove(object_);
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

TEST_F(NamedMutexConcurrent, AHolderIsNotDisturbedByThoseWhoGiveUp) {
  NamedMutex mutex(name_);
  std::latch held(1);
  std::latch given_up(1);
  bool still_locked = false;
  std::thread holder([&] {
    if (!mutex.lock_for(kLong)) ADD_FAILURE() << "not locked";
    held.count_down();
    given_up.wait();
    still_locked = ::pthread_mutex_trylock(static_cast<pthread_mutex_t*>(mutex.native_handle())) != 0;
    mutex.unlock();
  });
  held.wait();
  EXPECT_FALSE(mutex.lock_for(milliseconds(1)));
  given_up.count_down();
  holder.join();
  EXPECT_TRUE(still_locked);
  EXPECT_TRUE(mutex.lock_for(kAtOnce));
  mutex.unlock();
}

}  // namespace
}  // namespace pv
