#include "common/output.h"

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <new>

namespace pv {

void print(const char* format, ...) {
  char line[2048];  // most texts
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
  if (size < sizeof line) {
    print_text({line, size});
  } else if (const std::unique_ptr<char[]> longer(new (std::nothrow) char[size + 1]); longer) {
    print_text({longer.get(), format_bytes(longer.get(), size + 1, format, again)});
  }
  va_end(again);
}

void print_text(std::string_view text) {
  // stdio locks the stream for one call, which keeps the text in one piece.
  [[maybe_unused]] const std::size_t written = std::fwrite(text.data(), 1, text.size(), stdout);
}

void flush_output() {
  [[maybe_unused]] const int result = std::fflush(stdout);
}

}  // namespace pv
