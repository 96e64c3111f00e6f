// printf-style formatting into bounded text.
#pragma once

#include <cstdarg>
#include <cstddef>

#include "common/bounded_text.h"

#define PV_PRINTF(text, first) __attribute__((format(printf, text, first)))

namespace pv {

// Formats into `size` bytes, cutting what does not fit; returns the length written, without the terminating zero.
std::size_t format_bytes(char* buffer, std::size_t size, const char* format, std::va_list arguments)
    __attribute__((format(printf, 3, 0)));

// Text of at most 1023, 2047, 279, 255 and 39 bytes; what does not fit is cut.
BoundedText<1024> format_text(const char* format, ...) PV_PRINTF(1, 2);
BoundedText<2048> format_text_2048(const char* format, ...) PV_PRINTF(1, 2);
BoundedText<280> format_text_280(const char* format, ...) PV_PRINTF(1, 2);
BoundedText<256> format_text_256(const char* format, ...) PV_PRINTF(1, 2);
BoundedText<40> format_text_40(const char* format, ...) PV_PRINTF(1, 2);

}  // namespace pv
