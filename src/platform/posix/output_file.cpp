#include <fcntl.h>

#include <cerrno>
#include <memory>

#include "platform/file.h"
#include "platform/paths.h"
#include "platform/posix/buffered_output.h"

namespace pv::platform {
namespace {

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

bool not_open() {
  errno = EBADF;
  return false;
}

}  // namespace

struct OutputFile::State {
  BufferedOutput output;
};

OutputFile::OutputFile() = default;
OutputFile::~OutputFile() = default;
OutputFile::OutputFile(OutputFile&&) noexcept = default;
OutputFile& OutputFile::operator=(OutputFile&&) noexcept = default;

bool OutputFile::open(std::string_view path, FileMode mode, Disposition disposition) {
  state_.reset();
  Descriptor file = open_output(creatable_path(path), open_flags(disposition));
  if (!file.is_open()) return false;
  state_.reset(new State{BufferedOutput(std::move(file), mode)});
  return true;
}

bool OutputFile::is_open() const {
  return state_ != nullptr;
}

bool OutputFile::write(std::string_view bytes) {
  return state_ ? state_->output.write(bytes) : not_open();
}

bool OutputFile::flush() {
  return state_ ? state_->output.flush() : not_open();
}

bool OutputFile::close() {
  if (!state_) return not_open();
  const bool closed = state_->output.close();
  state_.reset();
  return closed;
}

}  // namespace pv::platform
