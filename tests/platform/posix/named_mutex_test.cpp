#include "platform/named_mutex.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/named_mutex_fixture.h"

namespace pv {
namespace {

namespace fs = std::filesystem;

fs::path object_of(const std::string& name) {
  return "/dev/shm/pvmtafilter-1-" + std::to_string(::geteuid()) + "-" + name;
}

}  // namespace

test::NamedMutexTest::~NamedMutexTest() {
  fs::remove(object_of(name_));
  fs::remove(object_of(other_name_));
}

namespace {

using platform::NamedMutex;
using std::chrono::milliseconds;
using test::kAtOnce;
using test::kLong;
using test::NamedMutexTest;

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

TEST_F(NamedMutexTest, NobodyElseCanHoldIt) {
  const NamedMutex mutex(name_);
  struct stat status {};
  ASSERT_EQ(::stat(object_of(name_).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
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

// Anybody may create files beside the mutexes; a lock of theirs would make report lines drop.
TEST_F(NamedMutexTest, TrustsNoObjectThatIsNotItsOwn) {
  const fs::path object = object_of(name_);
  { const NamedMutex own(name_); }
  const auto size = fs::file_size(object);
  fs::remove(object);
  const auto put_file = [&](std::uintmax_t bytes, fs::perms rights) {
    std::ofstream(object).flush();
    fs::resize_file(object, bytes);
    fs::permissions(object, rights);
  };
  const auto owner_only = fs::perms::owner_read | fs::perms::owner_write;
  for (const char* fault : {"too short", "not a mutex", "open to others", "a link", "a directory"}) {
    const std::string_view what = fault;
    if (what == "too short") put_file(0, owner_only);
    if (what == "not a mutex") put_file(size, owner_only);
    if (what == "open to others") put_file(size, owner_only | fs::perms::others_write);
    if (what == "a link") fs::create_symlink("nothing", object);
    if (what == "a directory") fs::create_directory(object);
    NamedMutex mutex(name_);
    EXPECT_TRUE(mutex.lock_for(kAtOnce)) << what;
    mutex.unlock();
    fs::remove(object);
  }
}

}  // namespace
}  // namespace pv
