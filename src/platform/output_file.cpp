#include <memory>

#include "platform/buffered_output.h"
#include "platform/file.h"
#include "platform/last_error.h"
#include "platform/paths.h"

namespace pv::platform {
namespace {

bool not_open() {
  set_last_system_error(kNotOpenError);
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
  Descriptor file = open_output(creatable_path(path), disposition);
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
