#include "platform/process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>
#include <string>
#include <vector>

#include "platform/command_line.h"
#include "platform/paths.h"
#include "platform/posix/descriptor.h"

namespace pv::platform {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// A program that was killed is gone at once, unless the system itself holds it up (a dead network file system); then it
// is given up, so that the caller goes on.
constexpr milliseconds kKillLimit{10'000};

constexpr int kNotFound = 2;

// The codes that Windows gives for the same.
int windows_code(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return kNotFound;
    case EACCES:
    case EPERM:
      return 5;
    case EAGAIN:
    case ENOMEM:
      return 8;
    case ENOEXEC:
      return 193;
    case E2BIG:
      return 206;
    default:
      return error;
  }
}

// A program in a directory is found as other files are: with either separator, in any letter case.
std::string program_file(const std::string& name) {
  if (name.find_first_of("/\\") == std::string::npos) return name;
  return existing_path(name).value_or(name);
}

// What a new program has of this process: its standard output and error. It leads a process group of its own, so that
// everything it starts can be ended with it.
class SpawnSettings {
 public:
  SpawnSettings() {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawnattr_init(&attributes_);
    expect(::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    expect(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));

    sigset_t signals;
    ::sigemptyset(&signals);
    expect(::posix_spawnattr_setsigmask(&attributes_, &signals));
    ::sigfillset(&signals);
    expect(::posix_spawnattr_setsigdefault(&attributes_, &signals));
    expect(::posix_spawnattr_setpgroup(&attributes_, 0));
    expect(::posix_spawnattr_setflags(&attributes_,
                                      POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF));
  }
  ~SpawnSettings() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attributes_);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  // 0, or the system's code. `arguments` begin with the program's name as it was given.
  int spawn(const std::string& program, std::vector<std::string>& arguments, pid_t& pid) const {
    if (failure_ != 0) return failure_;
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    return ::posix_spawnp(&pid, program.c_str(), &actions_, &attributes_, pointers.data(), environ);
  }

 private:
  void expect(int result) {
    if (failure_ == 0) failure_ = result;
  }

  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
  int failure_ = 0;
};

// A child of this process. The host may let the system reap its children (SIGCHLD ignored) or reap any child itself, so
// a child that is not there to be waited for has ended.
class Child {
 public:
  explicit Child(pid_t pid) : pid_(pid), watch_(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0))) {
    if (!watch_.is_open()) return;
    // Refused by a system that opens such descriptors but does not wait for them.
    siginfo_t info{};
    if (::waitid(P_PIDFD, static_cast<id_t>(watch_.number()), &info, WEXITED | WNOHANG | WNOWAIT) != 0 &&
        errno != ECHILD)
      watch_.reset();
  }

  // True once the child has ended and left no zombie; false at the limit.
  bool ends_within(milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    return watch_.is_open() ? wait_watching(deadline) : wait_asking(deadline);
  }

  // With everything in its group. It has not been reaped, so that its number is still its own.
  void kill_group() const {
    ::kill(-pid_, SIGKILL);
    ::kill(pid_, SIGKILL);  // it may have left the group
  }

 private:
  bool wait_watching(Clock::time_point deadline) {
    for (;;) {
      const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
      pollfd wait{watch_.number(), POLLIN, 0};
      const int ready = ::poll(&wait, 1, static_cast<int>(std::max(left, milliseconds::zero()).count()));
      if (ready < 0 && errno == EINTR) continue;
      if (ready < 0) return wait_asking(deadline);
      // Without WNOHANG: a debugger may be told of the end before this process is.
      return ready > 0 && reap(P_PIDFD, static_cast<id_t>(watch_.number()), WEXITED);
    }
  }

  // For systems without descriptors of processes, or when there is none left to open: asks again and again, at longer
  // and longer intervals.
  bool wait_asking(Clock::time_point deadline) {
    constexpr milliseconds kLongestPause{100};
    milliseconds pause{1};
    while (!reap(P_PID, static_cast<id_t>(pid_), WEXITED | WNOHANG)) {
      const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
      if (left <= milliseconds::zero()) return false;
      pause = std::min({2 * pause, kLongestPause, left});
      const timespec interval{0, std::chrono::nanoseconds(pause).count()};
      ::nanosleep(&interval, nullptr);
    }
    return true;
  }

  static bool reap(idtype_t kind, id_t id, int options) {
    siginfo_t info{};
    while (::waitid(kind, id, &info, options) != 0) {
      if (errno != EINTR) return true;
    }
    return info.si_pid != 0;
  }

  pid_t pid_;
  Descriptor watch_;
};

// poll() takes no more.
milliseconds bounded(milliseconds limit) {
  return std::clamp(limit, milliseconds::zero(), milliseconds(INT_MAX));
}

}  // namespace

ProgramRun run_program(std::string_view command_line, milliseconds limit) {
  ProgramRun run;
  std::vector<std::string> words = split_command_line(command_line);
  if (words.empty()) {
    run.error_code = kNotFound;
    return run;
  }
  pid_t pid = 0;
  run.error_code = windows_code(SpawnSettings().spawn(program_file(words.front()), words, pid));
  if (run.error_code != 0) return run;

  run.started = true;
  Child child(pid);
  run.timed_out = !child.ends_within(bounded(limit));
  if (run.timed_out) {
    child.kill_group();
    static_cast<void>(child.ends_within(kKillLimit));
  }
  return run;
}

}  // namespace pv::platform
