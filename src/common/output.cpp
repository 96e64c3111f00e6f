#include "common/output.h"

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <new>
#include <string>

namespace pv {
namespace {

// What this thread prints into; nullptr: straight to standard output.
constinit thread_local PrintedTogether* open_output = nullptr;

void write_out(std::string_view text) {
  // stdio locks the stream for one call, which keeps the text in one piece.
  [[maybe_unused]] const std::size_t written = std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace

struct OpenOutput {
  // False when there is not so much room at all; what was kept has then been handed over.
  static bool make_room(PrintedTogether& output, std::size_t size) {
    if (size > output.kept_.size() - output.used_) hand_over(output);
    return size <= output.kept_.size();
  }
  // Into the room that was made.
  static void keep(PrintedTogether& output, std::string_view text) {
    output.used_ += text.copy(output.kept_.data() + output.used_, text.size());
  }
  static void hand_over(PrintedTogether& output) {
    if (output.used_ > 0) write_out({output.kept_.data(), output.used_});
    output.used_ = 0;
  }
};

PrintedTogether::PrintedTogether() : is_outermost_(open_output == nullptr) {
  if (is_outermost_) open_output = this;
}

PrintedTogether::~PrintedTogether() {
  if (!is_outermost_) return;
  open_output = nullptr;
  OpenOutput::hand_over(*this);
}

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
  if (open_output == nullptr || !OpenOutput::make_room(*open_output, text.size())) return write_out(text);
  OpenOutput::keep(*open_output, text);
}

void print_parts(std::initializer_list<std::string_view> parts) {
  std::size_t size = 0;
  for (const std::string_view part : parts) size += part.size();
  if (open_output != nullptr && OpenOutput::make_room(*open_output, size)) {
    for (const std::string_view part : parts) OpenOutput::keep(*open_output, part);
    return;
  }
  std::string text;  // in one piece, whatever other threads print
  text.reserve(size);
  for (const std::string_view part : parts) text += part;
  print_text(text);
}

void hand_over_output() {
  if (open_output != nullptr) OpenOutput::hand_over(*open_output);
}

void flush_output() {
  hand_over_output();
  [[maybe_unused]] const int result = std::fflush(stdout);
}

}  // namespace pv
