#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/file_faults.h"
#include "platform/posix/kept_errno.h"

namespace pv::platform {
namespace {

// O_NONBLOCK: the kind of file is known only once it is open, and opening a FIFO would wait for its other end.
constexpr int kSafely = O_NONBLOCK | O_CLOEXEC | O_NOCTTY;

mode_t kind_of(const Descriptor& file) {
  struct stat status;
  return ::fstat(file.number(), &status) == 0 ? status.st_mode & S_IFMT : 0;
}

Descriptor refused() {
  errno = EINVAL;
  return {};
}

}  // namespace

Descriptor::Descriptor(int number) : number_(number) {
  if (number < STDIN_FILENO || number > STDERR_FILENO) return;
  number_ = ::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const KeptErrno kept;
  ::close(number);
}

void Descriptor::reset() {
  const KeptErrno kept;
  if (is_open()) ::close(release());
}

Descriptor open_regular_file(const std::string& path) {
  if (fails_for_test(FileOperation::kOpen)) return {};
  Descriptor file(::open(path.c_str(), O_RDONLY | kSafely));
  if (file.is_open() && kind_of(file) != S_IFREG) return refused();
  return file;
}

Descriptor open_output(const std::string& path, int flags, mode_t mode) {
  if (fails_for_test(FileOperation::kOpen)) return {};
  Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | kSafely | flags, mode));
  if (!file.is_open()) return file;
  const mode_t kind = kind_of(file);
  if (kind != S_IFREG && kind != S_IFCHR) return refused();
  // A terminal that is slow for a moment must not look like a failed write.
  if (kind == S_IFCHR) ::fcntl(file.number(), F_SETFL, flags & O_APPEND);
  return file;
}

ssize_t read_block(const Descriptor& file, std::span<char> block) {
  if (fails_for_test(FileOperation::kRead)) return -1;
  ssize_t got;
  do {
    got = ::read(file.number(), block.data(), block.size());
  } while (got < 0 && errno == EINTR);
  return got;
}

std::size_t write_most(int number, std::string_view bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t written = ::write(number, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) break;
    done += static_cast<std::size_t>(written);
  }
  return done;
}

bool write_all(int number, std::string_view bytes) {
  return write_most(number, bytes) == bytes.size();
}

}  // namespace pv::platform
