// The mutex lies in an object of the system's shared memory that belongs to one user: nobody else can hold it and so
// make this user's report lines drop. The object stays until the system restarts. It cannot be removed when the last
// process leaves, because another one may be about to open it and the two would then lock different mutexes.
#include "platform/named_mutex.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <new>
#include <string>
#include <utility>

#include "platform/last_error.h"
#include "platform/posix/descriptor.h"

namespace pv::platform {
namespace {

constexpr char kDirectory[] = "/dev/shm/";
constexpr std::size_t kMaxName = 63;  // bytes of a mutex's name
constexpr std::uint32_t kMark = 0x31786D70;
constexpr int kMaxTries = 10;  // how often an object may vanish between finding and opening it
// Longer waits are as good as endless, and would overflow the system's time.
constexpr std::chrono::milliseconds kMaxLimit = std::chrono::hours(24 * 365);

// What the object holds. A program of another word size has another layout and gets no share in it.
struct SharedMutex {
  std::uint32_t mark;
  std::uint32_t size;  // of all of this
  pthread_mutex_t mutex;
};

bool is_valid_name(std::string_view name) {
  const auto allowed = [](char c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return letter || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
  };
  return !name.empty() && name.size() <= kMaxName && std::all_of(name.begin(), name.end(), allowed);
}

// The layout is part of the name, so that an object left by another release is never met.
std::string object_path(std::string_view name) {
  return kDirectory + ("pvmtafilter-1-" + std::to_string(::geteuid()) + '-').append(name);
}

// Robust: the kernel says when the holder died. Errorcheck: a second lock by the holder fails at once.
bool initialise(pthread_mutex_t& mutex, int sharing) {
  pthread_mutexattr_t attributes;
  if (::pthread_mutexattr_init(&attributes) != 0) return false;
  const bool made = ::pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK) == 0 &&
                    ::pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST) == 0 &&
                    ::pthread_mutexattr_setpshared(&attributes, sharing) == 0 &&
                    ::pthread_mutex_init(&mutex, &attributes) == 0;
  ::pthread_mutexattr_destroy(&attributes);
  return made;
}

SharedMutex* map(const Descriptor& object) {
  void* const memory = ::mmap(nullptr, sizeof(SharedMutex), PROT_READ | PROT_WRITE, MAP_SHARED, object.number(), 0);
  return memory == MAP_FAILED ? nullptr : static_cast<SharedMutex*>(memory);
}

void unmap(SharedMutex* shared) {
  if (shared != nullptr) ::munmap(shared, sizeof(SharedMutex));
}

// Anybody may put a file of this name into the directory.
bool is_ours(const Descriptor& object) {
  struct stat status;
  return ::fstat(object.number(), &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == ::geteuid() &&
         (status.st_mode & 077) == 0 && status.st_size == static_cast<off_t>(sizeof(SharedMutex));
}

SharedMutex* open_object(const std::string& path) {
  const Descriptor object(::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!object.is_open() || !is_ours(object)) return nullptr;
  SharedMutex* shared = map(object);
  if (shared == nullptr || (shared->mark == kMark && shared->size == sizeof(SharedMutex))) return shared;
  unmap(shared);
  return nullptr;
}

// The memory is reserved first: with none left, touching it would be a signal and no error.
SharedMutex* initialised(const Descriptor& object) {
  if (::posix_fallocate(object.number(), 0, sizeof(SharedMutex)) != 0) return nullptr;
  SharedMutex* shared = map(object);
  if (shared == nullptr) return nullptr;
  shared->mark = kMark;
  shared->size = sizeof(SharedMutex);
  if (initialise(shared->mutex, PTHREAD_PROCESS_SHARED)) return shared;
  unmap(shared);
  return nullptr;
}

// Made complete under a name of its own and only then given the common one, so that nobody sees half a mutex. nullptr
// with errno EEXIST when somebody else was first.
SharedMutex* create_object(const std::string& path) {
  std::string own = kDirectory + std::string("pvmtafilter-XXXXXX");
  const Descriptor object(::mkostemp(own.data(), O_CLOEXEC));
  if (!object.is_open()) return nullptr;
  SharedMutex* shared = initialised(object);
  const bool published = shared != nullptr && ::link(own.c_str(), path.c_str()) == 0;
  const KeptSystemError kept;
  ::unlink(own.c_str());
  if (published) return shared;
  unmap(shared);
  return nullptr;
}

// nullptr when there is no usable shared memory.
SharedMutex* open_or_create(std::string_view name) {
  if (!is_valid_name(name)) return nullptr;
  const std::string path = object_path(name);
  for (int i = 0; i < kMaxTries; ++i) {
    errno = 0;
    if (SharedMutex* shared = open_object(path)) return shared;
    if (errno != ENOENT) return nullptr;
    if (SharedMutex* shared = create_object(path)) return shared;
    if (errno != EEXIST) return nullptr;
  }
  return nullptr;
}

timespec deadline_after(std::chrono::milliseconds limit, clockid_t clock) {
  const auto wait = std::clamp(limit, std::chrono::milliseconds(0), kMaxLimit).count();
  timespec deadline{};
  ::clock_gettime(clock, &deadline);
  deadline.tv_sec += static_cast<time_t>(wait / 1000);
  deadline.tv_nsec += static_cast<long>(wait % 1000) * 1'000'000;
  if (deadline.tv_nsec >= 1'000'000'000) {
    deadline.tv_nsec -= 1'000'000'000;
    ++deadline.tv_sec;
  }
  return deadline;
}

#if defined(__SANITIZE_THREAD__)
#define PV_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define PV_THREAD_SANITIZER 1
#endif
#endif

int lock_until(pthread_mutex_t& mutex, std::chrono::milliseconds limit) {
#ifdef PV_THREAD_SANITIZER
  // ThreadSanitizer does not know pthread_mutex_clocklock, and would take what the mutex guards for a race.
  const timespec deadline = deadline_after(limit, CLOCK_REALTIME);
  return ::pthread_mutex_timedlock(&mutex, &deadline);
#else
  // Not the clock of the day, which may be set while we wait.
  const timespec deadline = deadline_after(limit, CLOCK_MONOTONIC);
  return ::pthread_mutex_clocklock(&mutex, CLOCK_MONOTONIC, &deadline);
#endif
}

}  // namespace

struct NamedMutex::State {
  State() = default;
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  // A shared mutex is not destroyed: other processes may be using it.
  ~State() {
    if (own_made) ::pthread_mutex_destroy(&own);
    unmap(shared);
  }

  void open(std::string_view name) {
    shared = open_or_create(name);
    if (shared != nullptr) {
      mutex = &shared->mutex;
      return;
    }
    own_made = initialise(own, PTHREAD_PROCESS_PRIVATE);
    if (own_made) mutex = &own;
  }

  SharedMutex* shared = nullptr;
  pthread_mutex_t own{};  // of this object alone, where shared memory cannot be had
  bool own_made = false;
  pthread_mutex_t* mutex = nullptr;  // the one of the two in use
};

NamedMutex::NamedMutex(std::string_view name) : state_(new (std::nothrow) State) {
  if (state_ != nullptr) state_->open(name);
}

NamedMutex::~NamedMutex() = default;

bool NamedMutex::lock_for(std::chrono::milliseconds limit) {
  if (state_ == nullptr || state_->mutex == nullptr) return false;
  const int result = lock_until(*state_->mutex, limit);
  if (result != EOWNERDEAD) return result == 0;
  // What the mutex guards is a report line at most half written; the next one begins behind it.
  if (::pthread_mutex_consistent(state_->mutex) == 0) return true;
  ::pthread_mutex_unlock(state_->mutex);
  return false;
}

void NamedMutex::unlock() {
  if (state_ != nullptr && state_->mutex != nullptr) ::pthread_mutex_unlock(state_->mutex);
}

void* NamedMutex::native_handle() {
  return state_ == nullptr ? nullptr : state_->mutex;
}

}  // namespace pv::platform
