#include "platform/output_capture.h"

#include <io.h>
#include <windows.h>

#include <array>
#include <cstdio>

#include "platform/windows/descriptor.h"

namespace pv::platform {
namespace {

constexpr int kStandardOutput = 1;

Descriptor temporary_file() {
  std::array<char, MAX_PATH + 1> directory{};
  std::array<char, MAX_PATH + 1> path{};
  if (::GetTempPathA(static_cast<DWORD>(directory.size()), directory.data()) == 0) return {};
  if (::GetTempFileNameA(directory.data(), "out", 0, path.data()) == 0) return {};
  return create_short_lived(path.data());
}

// The C run-time, which most libraries of the process share, and the system, which the others ask.
bool redirect(const Descriptor& file) {
  if (::_dup2(file.number(), kStandardOutput) != 0) return false;
  ::SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(::_get_osfhandle(kStandardOutput)));
  return true;
}

void close_standard_output() {
  ::_close(kStandardOutput);
  ::SetStdHandle(STD_OUTPUT_HANDLE, nullptr);
}

std::string everything_in(const Descriptor& file) {
  std::string bytes;
  std::array<char, 4096> block{};
  ::_lseeki64(file.number(), 0, SEEK_SET);
  int got;
  while ((got = ::_read(file.number(), block.data(), static_cast<unsigned>(block.size()))) > 0)
    bytes.append(block.data(), static_cast<std::size_t>(got));
  return bytes;
}

}  // namespace

struct OutputCapture::State {
  Descriptor shown;   // what standard output was; not open when it was closed
  Descriptor caught;  // not open when nothing is caught (any more)
};

OutputCapture::OutputCapture() : state_(std::make_unique<State>()) {
  std::fflush(stdout);
  Descriptor caught = temporary_file();
  if (!caught.is_open()) return;
  state_->shown = duplicate(kStandardOutput);
  if (redirect(caught)) state_->caught = std::move(caught);
}

OutputCapture::~OutputCapture() {
  static_cast<void>(take());
}

std::string OutputCapture::take() {
  if (!state_->caught.is_open()) return {};
  std::fflush(stdout);
  if (!state_->shown.is_open() || !redirect(state_->shown)) close_standard_output();
  state_->shown.reset();
  const Descriptor caught = std::move(state_->caught);
  return everything_in(caught);
}

}  // namespace pv::platform
