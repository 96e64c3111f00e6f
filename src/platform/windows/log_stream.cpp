// The C run-time translates the text. It hands a flush to the system in pieces of a few kilobytes, so a longer text is
// in one piece only for writers that keep each other out by other means, as the agent does with its report mutex.
#include "platform/log_stream.h"

#include <fcntl.h>
#include <io.h>

#include "platform/descriptor.h"
#include "platform/paths.h"

namespace pv::platform {
namespace {

constexpr std::size_t kBuffer = 65536;  // bytes; what is written between two flushes beyond them goes out sooner

}  // namespace

std::FILE* open_log_stream(std::string_view path) {
  Descriptor file = open_output(creatable_path(path), Disposition::kAppend);
  if (!file.is_open() || ::_setmode(file.number(), _O_TEXT) == -1) return nullptr;
  std::FILE* stream = ::_fdopen(file.number(), "at");
  if (stream == nullptr) return nullptr;
  file.release();  // the stream owns it now
  std::setvbuf(stream, nullptr, _IOFBF, kBuffer);
  return stream;
}

}  // namespace pv::platform
