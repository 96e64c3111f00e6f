#include "platform/settings_bytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/descriptor.h"
#include "platform/posix/file_status.h"

namespace pv::platform {
namespace {

SettingsRead outcome_of_failed_open() {
  if (errno == EMFILE || errno == ENFILE || errno == ENOMEM) return SettingsRead::kNotNow;
  return errno == ENOENT || errno == ENOTDIR ? SettingsRead::kMissing : SettingsRead::kUnreadable;
}

// All bytes up to the end. False on a failure or when there are more than a settings file may have.
bool read_all(const Descriptor& file, std::size_t expected_size, std::string& bytes) {
  std::size_t filled = 0;
  bytes.resize(expected_size + 1);  // one more, so that the end shows without another round
  for (;;) {
    const ssize_t got = ::read(file.number(), bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    filled += static_cast<std::size_t>(got);
    if (filled > kMaxSettingsBytes) return false;
    if (got == 0) break;
    if (filled == bytes.size()) bytes.resize(bytes.size() * 2);
  }
  bytes.resize(filled);
  return true;
}

void note_status(const struct stat& status, SettingsBytes& file) {
  file.identity = identity_of(status);
  file.settled = is_settled(file.identity);
}

SettingsRead read_open_file(const Descriptor& descriptor, SettingsBytes& file) {
  struct stat status;
  if (::fstat(descriptor.number(), &status) != 0) return SettingsRead::kUnreadable;
  note_status(status, file);
  if (!S_ISREG(status.st_mode) || status.st_size > static_cast<off_t>(kMaxSettingsBytes)) {
    return SettingsRead::kUnreadable;
  }
  if (read_all(descriptor, static_cast<std::size_t>(status.st_size), file.bytes)) return SettingsRead::kRead;
  file.bytes.clear();
  return SettingsRead::kUnreadable;
}

}  // namespace

FileIdentity settings_identity(const char* path) {
  struct stat status;
  return ::stat(path, &status) == 0 ? identity_of(status) : FileIdentity();
}

SettingsBytes read_settings_bytes(const char* path) {
  SettingsBytes file;
  struct stat status;
  if (::stat(path, &status) != 0) {
    file.outcome = outcome_of_failed_open();
    file.settled = true;
    return file;
  }
  note_status(status, file);
  // Not blocking: a FIFO may have taken the file's place since.
  const Descriptor descriptor(::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  file.outcome = descriptor.is_open() ? read_open_file(descriptor, file) : outcome_of_failed_open();
  return file;
}

}  // namespace pv::platform
