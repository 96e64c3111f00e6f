// Reading files. Text mode translates where a line or block is handed out and not where it is read: a CR LF can only
// stand at the end of a line, so the CR of the pair is overwritten with the LF and nothing is moved.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "platform/descriptor.h"
#include "platform/file.h"
#include "platform/last_error.h"
#include "platform/path_parts.h"
#include "platform/paths.h"
#include "platform/reuse_pool.h"

namespace pv::platform {

struct InputFile::State {
  static ReusePool<State> unused;

  Descriptor file;
  bool text = false;
  bool ended = false;  // the system said so, or failed
  bool failed = false;
  std::uint64_t size_when_opened = 0;  // bytes
  std::uint64_t from_file = 0;         // bytes read from it
  std::uint32_t blocks = 0;            // in so many reads
  std::size_t begin = 0;               // buffer[begin, end) was read and not handed out
  std::size_t end = 0;
  std::array<char, 65536> buffer;

  void start(Descriptor opened, FileMode mode, std::uint64_t size) {
    file = std::move(opened);
    text = mode == FileMode::kText;
    ended = failed = false;
    size_when_opened = size;
    from_file = 0;
    blocks = 0;
    begin = end = 0;
  }

  char* next() { return buffer.data() + begin; }
  std::size_t available() const { return end - begin; }
  bool fill();
  bool fill_directly(std::span<char> block, std::size_t& filled);
  bool have(std::size_t count);
  std::string_view take_line(std::size_t raw_length);
  std::string_view take(std::size_t length);
  std::size_t read_text(std::span<char> block);
  std::size_t read_binary(std::span<char> block);
};
static_assert(sizeof(std::array<char, 65536>) > InputFile::kLargestLine, "a line and what follows it must fit");

namespace {

std::size_t find_or(std::string_view text, char wanted, std::size_t otherwise) {
  const std::size_t found = text.find(wanted);
  return found == std::string_view::npos ? otherwise : found;
}

}  // namespace

// Reads more behind what is there. False: nothing came, the file has ended or failed.
bool InputFile::State::fill() {
  if (ended) return false;
  std::memmove(buffer.data(), next(), available());
  end = available();
  begin = 0;
  const std::span<char> room = std::span(buffer).subspan(end);
  const std::ptrdiff_t got = read_block(file, room);
  ++blocks;
  failed = got < 0;
  ended = got <= 0;
  if (ended) return false;
  const std::size_t bytes = static_cast<std::size_t>(got);
  end += bytes;
  from_file += bytes;
  // Saves asking once more for nothing. A size alone is not believed: a file may have grown, or not know its size.
  ended = bytes < room.size() && from_file == size_when_opened;
  return true;
}

bool InputFile::State::have(std::size_t count) {
  while (available() < count) {
    if (!fill()) return false;
  }
  return true;
}

std::string_view InputFile::State::take(std::size_t length) {
  const std::string_view taken(next(), length);
  begin += length;
  return taken;
}

// `raw_length` bytes that end in LF.
std::string_view InputFile::State::take_line(std::size_t raw_length) {
  char* line = next();
  begin += raw_length;
  if (!text || raw_length < 2 || line[raw_length - 2] != '\r') return {line, raw_length};
  line[raw_length - 2] = '\n';
  return {line, raw_length - 1};
}

std::size_t InputFile::State::read_text(std::span<char> block) {
  std::size_t filled = 0;
  while (filled < block.size() && have(1)) {
    const std::size_t most = std::min(available(), block.size() - filled);
    const std::size_t plain = find_or({next(), most}, '\r', most);
    if (plain > 0) {
      std::memcpy(block.data() + filled, take(plain).data(), plain);
      filled += plain;
    } else if (have(2) && next()[1] == '\n') {
      ++begin;  // the LF goes out as a plain byte
    } else {
      block[filled++] = take(1).front();
    }
  }
  return filled;
}

// Reads straight into the block, past the buffer. False as with fill().
bool InputFile::State::fill_directly(std::span<char> block, std::size_t& filled) {
  if (ended) return false;
  const std::ptrdiff_t got = read_block(file, block.subspan(filled));
  ++blocks;
  failed = got < 0;
  ended = got <= 0;
  if (ended) return false;
  filled += static_cast<std::size_t>(got);
  from_file += static_cast<std::size_t>(got);
  return true;
}

std::size_t InputFile::State::read_binary(std::span<char> block) {
  std::size_t filled = 0;
  while (filled < block.size()) {
    // The large blocks of a message's body need not pass through the buffer.
    if (available() == 0 && block.size() - filled >= buffer.size()) {
      if (!fill_directly(block, filled)) break;
      continue;
    }
    if (!have(1)) break;
    const std::size_t count = std::min(available(), block.size() - filled);
    std::memcpy(block.data() + filled, take(count).data(), count);
    filled += count;
  }
  return filled;
}

// The buffers make a reader expensive to have and to give up: the C library would hand their memory back to the system
// after every message of a thread, and ask for it again.
constinit ReusePool<InputFile::State> InputFile::State::unused;

void InputFile::GiveBack::operator()(State* state) const noexcept {
  state->file.reset();
  State::unused.give_back(std::unique_ptr<State>(state));
}

void release_read_buffers() noexcept {
  InputFile::State::unused.clear();
}

InputFile::InputFile() = default;
InputFile::~InputFile() = default;
InputFile::InputFile(InputFile&&) noexcept = default;
InputFile& InputFile::operator=(InputFile&&) noexcept = default;

bool InputFile::open(std::string_view path, FileMode mode) {
  state_.reset();
  const std::string as_spelt = system_form(path);
  if (known_to_name_nothing(as_spelt)) {
    set_last_system_error(kNotFoundError);
    return false;
  }
  // As spelt first: it saves asking whether the file exists.
  std::uint64_t size = 0;
  Descriptor file = open_regular_file(as_spelt, &size);
  if (!file.is_open()) {
    const KeptSystemError kept;
    const auto found = path_in_another_case(as_spelt);
    if (!found || *found == as_spelt) return false;
    file = open_regular_file(*found, &size);
    if (!file.is_open()) return false;
  }
  std::unique_ptr<State> state = State::unused.take();
  if (state == nullptr) state = std::make_unique_for_overwrite<State>();  // the buffer needs no zeros
  state->start(std::move(file), mode, size);
  state_.reset(state.release());
  return true;
}

bool InputFile::is_open() const {
  return state_ != nullptr;
}

std::optional<std::string_view> InputFile::read_line(std::size_t capacity) {
  if (!state_) return std::nullopt;
  State& state = *state_;
  const std::size_t limit = std::min(std::max<std::size_t>(capacity, 2), kLargestLine) - 1;
  // One byte more than a piece may have: only it tells whether a CR LF ends just behind the piece's last character.
  const std::size_t window = limit + 1;
  std::size_t searched = 0;
  while (true) {
    const std::size_t most = std::min(state.available(), window);
    const std::string_view unsearched(state.next() + searched, most - searched);
    const std::size_t line_feed = unsearched.find('\n');
    if (line_feed != std::string_view::npos) {
      const std::size_t raw_length = searched + line_feed + 1;
      const bool fits = raw_length <= limit || (state.text && state.next()[raw_length - 2] == '\r');
      return fits ? state.take_line(raw_length) : state.take(limit);
    }
    if (most == window) return state.take(limit);
    searched = most;
    if (!state.fill()) break;
  }
  if (state.failed || state.available() == 0) return std::nullopt;
  return state.take(state.available());
}

std::size_t InputFile::read(std::span<char> block) {
  if (!state_) return 0;
  return state_->text ? state_->read_text(block) : state_->read_binary(block);
}

std::uint32_t InputFile::blocks_read() const {
  return state_ == nullptr ? 0 : state_->blocks;
}

bool InputFile::failed() const {
  return state_ != nullptr && state_->failed;
}

}  // namespace pv::platform
