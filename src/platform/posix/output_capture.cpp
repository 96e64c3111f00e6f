#include "platform/output_capture.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "platform/posix/descriptor.h"

namespace pv::platform {
namespace {

std::string everything_in(int file) {
  std::string bytes;
  std::array<char, 4096> block{};
  ::lseek(file, 0, SEEK_SET);
  ssize_t got;
  while ((got = ::read(file, block.data(), block.size())) > 0)
    bytes.append(block.data(), static_cast<std::size_t>(got));
  return bytes;
}

}  // namespace

struct OutputCapture::State {
  Descriptor shown;   // what standard output was; not open when it was closed
  Descriptor caught;  // a file in memory; not open when nothing is caught (any more)
};

OutputCapture::OutputCapture() : state_(std::make_unique<State>()) {
  std::fflush(stdout);
  Descriptor caught(::memfd_create("standard output", MFD_CLOEXEC));
  if (!caught.is_open()) return;
  ::fcntl(caught.number(), F_SETFL, O_APPEND);  // programs that share it would otherwise write over each other
  state_->shown = Descriptor(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  if (::dup2(caught.number(), STDOUT_FILENO) >= 0) state_->caught = std::move(caught);
}

OutputCapture::~OutputCapture() {
  static_cast<void>(take());
}

std::string OutputCapture::take() {
  if (!state_->caught.is_open()) return {};
  std::fflush(stdout);
  if (state_->shown.is_open()) {
    ::dup2(state_->shown.number(), STDOUT_FILENO);
  } else {
    ::close(STDOUT_FILENO);
  }
  state_->shown.reset();
  const Descriptor caught = std::move(state_->caught);
  return everything_in(caught.number());
}

}  // namespace pv::platform
