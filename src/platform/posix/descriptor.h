// Open files of the system. Whatever opens one here never waits for a FIFO's other end, and started programs do not
// inherit it. Paths are in the system's form already.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace pv::platform {

// Owns a file descriptor. Closing it leaves errno alone.
class Descriptor {
 public:
  Descriptor() = default;
  // Takes over what a system call gave. In a service that closed its standard streams that may be one of their numbers;
  // it is exchanged for a higher one, or what the process prints would go into the file.
  explicit Descriptor(int number);
  ~Descriptor() { reset(); }
  Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      reset();
      number_ = other.release();
    }
    return *this;
  }

  bool is_open() const { return number_ >= 0; }
  int number() const { return number_; }
  int release() { return std::exchange(number_, -1); }
  void reset();

 private:
  int number_ = -1;
};

// A regular file for reading; not open when it is anything else.
Descriptor open_regular_file(const std::string& path);

// For writing, with O_CREAT and the given flags: a regular file or a character device; not open when it is anything
// else.
Descriptor open_output(const std::string& path, int flags, mode_t mode = 0666);

// Up to `block.size()` bytes; 0 at the end, negative on failure.
ssize_t read_block(const Descriptor& file, std::span<char> block);

// All bytes, in as many steps as the system takes. Asks no fault hook: the caller knows which operation this is.
[[nodiscard]] bool write_all(int number, std::string_view bytes);

// The same for a caller that needs to know how many bytes a failed write left in the file.
[[nodiscard]] std::size_t write_most(int number, std::string_view bytes);

}  // namespace pv::platform
