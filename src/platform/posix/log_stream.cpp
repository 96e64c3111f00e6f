// The log's stream. The stream's own buffer gathers what is written up to the flush; the flush then translates it and
// hands it to the system in one write at the end of the file.
#include "platform/log_stream.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "platform/file.h"
#include "platform/file_faults.h"
#include "platform/paths.h"
#include "platform/posix/descriptor.h"

namespace pv::platform {
namespace {

constexpr std::size_t kBuffer = 65536;  // bytes; what is written between two flushes beyond them comes in pieces

struct Log {
  Descriptor file;
  bool broken_line = false;  // the disk was full in the middle of a text
  std::array<char, kBuffer> stream_buffer;
  std::array<char, 2 * kBuffer> translated;
};

std::string_view translate(std::string_view text, std::array<char, 2 * kBuffer>& out) {
  std::size_t length = 0;
  for (const char c : text) {
    if (c == '\n') out[length++] = '\r';
    out[length++] = c;
  }
  return {out.data(), length};
}

// Answers as the C library wants it: the bytes taken, 0 for a failure. Texts larger than the stream's buffer come
// past it, whole.
ssize_t write_text(void* cookie, const char* bytes, std::size_t count) {
  Log& log = *static_cast<Log*>(cookie);
  if (fails_for_test(FileOperation::kWrite)) return 0;
  if (log.broken_line && !write_all(log.file.number(), "\r\n")) return 0;
  log.broken_line = false;
  for (std::string_view rest(bytes, count); !rest.empty(); rest.remove_prefix(std::min(rest.size(), kBuffer))) {
    const std::string_view text = translate(rest.substr(0, kBuffer), log.translated);
    const std::size_t written = write_most(log.file.number(), text);
    if (written == text.size()) continue;
    log.broken_line = written > 0;
    return 0;
  }
  return static_cast<ssize_t>(count);
}

int close_log(void* cookie) {
  delete static_cast<Log*>(cookie);
  return 0;
}

}  // namespace

std::FILE* open_log_stream(std::string_view path) {
  Descriptor file = open_output(creatable_path(path), Disposition::kAppend);
  if (!file.is_open()) return nullptr;
  auto log = std::make_unique_for_overwrite<Log>();
  log->file = std::move(file);
  cookie_io_functions_t functions{};
  functions.write = write_text;
  functions.close = close_log;
  std::FILE* stream = ::fopencookie(log.get(), "w", functions);
  if (stream == nullptr) return nullptr;
  std::setvbuf(stream, log->stream_buffer.data(), _IOFBF, kBuffer);
  static_cast<void>(log.release());  // close_log owns it now
  return stream;
}

}  // namespace pv::platform
