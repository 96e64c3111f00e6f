#include "platform/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/named_mutex_fixture.h"
#include "platform/output_capture.h"
#include "platform/process_fixture.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::OutputCapture;
using platform::ProgramRun;
using platform::run_program;
using std::chrono::milliseconds;
using test::helper;
using test::kLong;

bool has_children() {
  siginfo_t info{};
  return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

std::string output_of(const std::string& command_line) {
  OutputCapture output;
  const ProgramRun run = run_program(command_line, kLong);
  EXPECT_TRUE(run.started && !run.timed_out) << command_line;
  return output.take();
}

struct RefusalCase {
  const char* what;
  std::string line;
  int error_code;
};

TEST(Process, GivesTheCodesThatWindowsGives) {
  const test::TemporaryDirectory directory;
  directory.write("plain", "text");
  directory.write("no-program", "text");
  ::chmod(directory.path("no-program").c_str(), 0755);
  const RefusalCase kRefusals[] = {
      {"empty", "", 2},
      {"missing", directory.path("missing"), 2},
      {"below a file", directory.path("plain/program"), 2},
      {"not executable", directory.path("plain"), 5},
      {"a directory", directory.path(), 5},
      {"in no format that the system runs", directory.path("no-program"), 193},
      {"an argument beyond the system's limit", "ls " + std::string(1 << 20, 'A'), 206},
  };
  for (const RefusalCase& c : kRefusals) {
    const ProgramRun run = run_program(c.line, kLong);
    EXPECT_FALSE(run.started) << c.what;
    EXPECT_EQ(run.error_code, c.error_code) << c.what;
  }
  EXPECT_FALSE(has_children());
}

TEST(Process, FindsTheProgramInAnySpelling) {
  const test::TemporaryDirectory directory;
  directory.write("Tools/scan.sh", "#!/bin/sh\necho \"$@\"\n");
  ::chmod(directory.path("Tools/scan.sh").c_str(), 0755);
  EXPECT_EQ(output_of(directory.path() + "\\tools\\SCAN.SH A B"), "A B\n");
}

// A host that lets its descriptors be inherited, reads a file, and ignores and blocks signals.
TEST(Process, GivesTheProgramNothingElseOfTheHost) {
  const int open = ::fcntl(STDOUT_FILENO, F_DUPFD, 100);
  ASSERT_GE(open, 100);
  const int input = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 100);
  const int file = ::open("/proc/self/exe", O_RDONLY | O_CLOEXEC);
  ::dup2(file, STDIN_FILENO);
  ::close(file);
  const auto handler = ::signal(SIGPIPE, SIG_IGN);
  sigset_t blocked;
  sigset_t before;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &before);

  EXPECT_EQ(output_of("ls /proc/self/fd"), "0\n1\n2\n3\n") << "3 is the directory";
  EXPECT_EQ(output_of("readlink /proc/self/fd/0"), "/dev/null\n");
  EXPECT_EQ(output_of("grep -Ec ^Sig(Blk|Ign):.*0000000$ /proc/self/status"), "2\n")
      << "signals of the C library above";

  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  ::signal(SIGPIPE, handler);
  ::dup2(input, STDIN_FILENO);
  ::close(input);
  ::close(open);
}

// No descriptor can be opened while this lives, so that processes cannot be waited for through one.
class NoDescriptors {
 public:
  NoDescriptors() {
    constexpr int kEnough = 64;  // for the programs that inherit the limit
    ::getrlimit(RLIMIT_NOFILE, &before_);
    do {
      opened_.push_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    } while (opened_.back() < kEnough - 1);
    const rlimit limit{kEnough, before_.rlim_max};
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(::open("/dev/null", O_RDONLY), -1);
  }
  ~NoDescriptors() {
    for (const int number : opened_) ::close(number);
    ::setrlimit(RLIMIT_NOFILE, &before_);
  }
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;

 private:
  std::vector<int> opened_;
  rlimit before_{};
};

// A host that never wants to wait for its children.
class IgnoredChildren {
 public:
  IgnoredChildren() : before_(::signal(SIGCHLD, SIG_IGN)) {}
  ~IgnoredChildren() { ::signal(SIGCHLD, before_); }
  IgnoredChildren(const IgnoredChildren&) = delete;
  IgnoredChildren& operator=(const IgnoredChildren&) = delete;

 private:
  void (*before_)(int);
};

// A host that waits for any child there is.
class ReapedChildren {
 public:
  ReapedChildren()
      : reaper_([this] {
          while (!stopped_) {
            if (::waitpid(-1, nullptr, 0) < 0) std::this_thread::yield();
          }
        }) {}
  ~ReapedChildren() {
    stopped_ = true;
    reaper_.join();
  }
  ReapedChildren(const ReapedChildren&) = delete;
  ReapedChildren& operator=(const ReapedChildren&) = delete;

 private:
  std::atomic<bool> stopped_ = false;
  std::thread reaper_;
};

struct Nothing {};

class ProcessHost : public test::NamedMutexTest {
 protected:
  // With a program that ends by itself, and one that does not.
  void run_both() const {
    const test::TemporaryDirectory directory;
    const ProgramRun ended = run_program(helper() + " print", kLong);
    EXPECT_TRUE(ended.started && !ended.timed_out);
    const ProgramRun killed = run_program(helper() + " hold " + name_ + " " + directory.path("held"), milliseconds(1));
    EXPECT_TRUE(killed.started && killed.timed_out);
    EXPECT_FALSE(has_children());
  }
  template <typename Host>
  void run_both_in() const {
    {
      [[maybe_unused]] const Host host{};
      run_both();
    }
    const NoDescriptors none;
    [[maybe_unused]] const Host host{};
    run_both();
  }
};

TEST_F(ProcessHost, LeavesNoZombie) {
  run_both_in<Nothing>();
}

TEST_F(ProcessHost, MayIgnoreItsChildren) {
  run_both_in<IgnoredChildren>();
}

TEST_F(ProcessHost, MayReapItsChildrenItself) {
  run_both_in<ReapedChildren>();
}

}  // namespace
}  // namespace pv
