// Open files of the system. Whatever opens one here never waits for a FIFO's other end, and started programs do not
// inherit it. Paths are in the system's form already.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/file.h"

namespace pv::platform {

// Owns a file descriptor (on Windows one of the C run-time's). Closing it leaves the last error alone.
class Descriptor {
 public:
  Descriptor() = default;
  // Takes over what a call of the system gave. In a service that closed its standard streams that may be one of their
  // numbers; it is exchanged for a higher one, or what the process prints would go into the file.
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

// A regular file for reading; not open when it is anything else. `size` is set to its bytes, if that is asked.
Descriptor open_regular_file(const std::string& path, std::uint64_t* size = nullptr);

// For writing, created when missing: a regular file or a character device; not open when it is anything else.
Descriptor open_output(const std::string& path, Disposition disposition);

std::optional<std::uint64_t> file_size(const Descriptor& file);

// Up to `block.size()` bytes; 0 at the end, negative on failure.
std::ptrdiff_t read_block(const Descriptor& file, std::span<char> block);

// All bytes, in as many steps as the system takes. Asks no fault hook: the caller knows which operation this is.
[[nodiscard]] bool write_all(const Descriptor& file, std::string_view bytes);

// False when the system could not store what was written. The descriptor is released in any case.
[[nodiscard]] bool close_checked(Descriptor& file);

}  // namespace pv::platform
