// Progress lines on standard output.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "common/formats.h"

namespace pv {

// Prints to standard output as printf does; of any length, with the line ends as given. Any thread; a call's text stays
// in one piece. Failures are ignored: nobody may be listening.
void print(const char* format, ...) PV_PRINTF(1, 2);

// Prints a text as it is.
void print_text(std::string_view text);

// The same for a text in parts.
void print_parts(std::initializer_list<std::string_view> parts);

// While it lives, what the thread prints is kept together and handed to standard output some kilobytes at a time, so
// that the threads do not meet at its lock with every line. Inside another one it does nothing.
class PrintedTogether {
 public:
  PrintedTogether();
  ~PrintedTogether();
  PrintedTogether(const PrintedTogether&) = delete;
  PrintedTogether& operator=(const PrintedTogether&) = delete;

 private:
  friend struct OpenOutput;
  bool is_outermost_;
  std::size_t used_ = 0;
  std::array<char, 8192> kept_;
};

// Gives standard output what the thread has kept; before a library is called that may print there too.
void hand_over_output();

// Hands everything printed so far to the system; for what another program or process prints next to the same place.
void flush_output();

}  // namespace pv
