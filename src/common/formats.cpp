#include "common/formats.h"

#include <algorithm>
#include <cstdio>

namespace pv {
namespace {

template <std::size_t N>
__attribute__((format(printf, 1, 0))) BoundedText<N> formatted(const char* format, std::va_list arguments) {
  char buffer[N];
  BoundedText<N> text;
  text.cut({buffer, format_bytes(buffer, N, format, arguments)});
  return text;
}

}  // namespace

std::size_t format_bytes(char* buffer, std::size_t size, const char* format, std::va_list arguments) {
  if (size == 0) return 0;
  const int length = std::vsnprintf(buffer, size, format, arguments);
  if (length >= 0) return std::min(static_cast<std::size_t>(length), size - 1);
  buffer[0] = '\0';
  return 0;
}

BoundedText<1024> format_text(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const auto text = formatted<1024>(format, arguments);
  va_end(arguments);
  return text;
}

BoundedText<2048> format_text_2048(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const auto text = formatted<2048>(format, arguments);
  va_end(arguments);
  return text;
}

BoundedText<280> format_text_280(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const auto text = formatted<280>(format, arguments);
  va_end(arguments);
  return text;
}

BoundedText<256> format_text_256(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const auto text = formatted<256>(format, arguments);
  va_end(arguments);
  return text;
}

BoundedText<40> format_text_40(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const auto text = formatted<40>(format, arguments);
  va_end(arguments);
  return text;
}

}  // namespace pv
