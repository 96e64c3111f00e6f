#include "platform/posix/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/file_faults.h"
#include "platform/last_error.h"

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

int open_flags(Disposition disposition) {
  switch (disposition) {
    case Disposition::kReplace:
      return O_TRUNC;
    case Disposition::kAppend:
      return O_APPEND;
    case Disposition::kCreateNew:
      return O_EXCL;
  }
  return O_EXCL;
}

}  // namespace

Descriptor::Descriptor(int number) : number_(number) {
  if (number < STDIN_FILENO || number > STDERR_FILENO) return;
  number_ = ::fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const KeptSystemError kept;
  ::close(number);
}

void Descriptor::reset() {
  const KeptSystemError kept;
  if (is_open()) ::close(release());
}

Descriptor open_regular_file(const std::string& path, std::uint64_t* size) {
  if (fails_for_test(FileOperation::kOpen)) return {};
  Descriptor file(::open(path.c_str(), O_RDONLY | kSafely));
  if (!file.is_open()) return file;
  struct stat status;
  if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) return refused();
  if (size != nullptr) *size = static_cast<std::uint64_t>(status.st_size);
  return file;
}

Descriptor open_output_with(const std::string& path, int flags, mode_t mode) {
  if (fails_for_test(FileOperation::kOpen)) return {};
  Descriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | kSafely | flags, mode));
  if (!file.is_open()) return file;
  const mode_t kind = kind_of(file);
  if (kind != S_IFREG && kind != S_IFCHR) return refused();
  // A terminal that is slow for a moment must not look like a failed write.
  if (kind == S_IFCHR) ::fcntl(file.number(), F_SETFL, flags & O_APPEND);
  return file;
}

Descriptor open_output(const std::string& path, Disposition disposition) {
  return open_output_with(path, open_flags(disposition), 0666);
}

std::optional<std::uint64_t> file_size(const Descriptor& file) {
  struct stat status;
  if (::fstat(file.number(), &status) != 0) return std::nullopt;
  return static_cast<std::uint64_t>(status.st_size);
}

std::ptrdiff_t read_block(const Descriptor& file, std::span<char> block) {
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

bool write_all(const Descriptor& file, std::string_view bytes) {
  return write_all(file.number(), bytes);
}

// Linux has released the descriptor even when it reports EINTR.
bool close_checked(Descriptor& file) {
  return ::close(file.release()) == 0 || errno == EINTR;
}

}  // namespace pv::platform
