// Replacing a file in one step. Failure: until the rename the target keeps its old bytes, and the temporary file is
// removed. A full disk shows in write or close, before the rename; a kill leaves the old file or the new one. Not
// handled: a power cut, which is left to the file system's order of data and rename (every message would wait for the
// disk several times otherwise), and two writers with the same temporary file.
#include <memory>
#include <optional>

#include "platform/buffered_output.h"
#include "platform/file.h"
#include "platform/last_error.h"
#include "platform/replacement_steps.h"

namespace pv::platform {

struct FileReplacement::State {
  ReplacementPaths paths;
  std::optional<BufferedOutput> output;  // none once committed, or when nothing could be opened

  void open(FileMode mode);
  void give_up();
};

void FileReplacement::State::open(FileMode mode) {
  if (paths.target == paths.temporary) return set_last_system_error(kInvalidError);
  Descriptor file = create_temporary(paths);
  if (file.is_open()) output.emplace(std::move(file), mode);
}

void FileReplacement::State::give_up() {
  if (!output) return;
  output.reset();
  remove_temporary(paths.temporary);
}

FileReplacement::FileReplacement(std::string_view target, std::string_view temporary, FileMode mode, TargetName name)
    : state_(std::make_unique<State>()) {
  state_->paths = replacement_paths(target, temporary, name);
  state_->open(mode);
}

FileReplacement::~FileReplacement() {
  state_->give_up();
}

bool FileReplacement::is_open() const {
  return state_->output.has_value();
}

bool FileReplacement::write(std::string_view bytes) {
  if (state_->output) return state_->output->write(bytes);
  set_last_system_error(kNotOpenError);
  return false;
}

bool FileReplacement::commit() {
  State& state = *state_;
  if (!state.output) return false;
  const bool renamed = state.output->close() && put_in_place(state.paths);
  if (renamed) {
    state.output.reset();
  } else {
    state.give_up();
  }
  return renamed;
}

}  // namespace pv::platform
