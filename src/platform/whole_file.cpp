// Whole files: reading and copying.
#include <array>
#include <memory>

#include "platform/descriptor.h"
#include "platform/file.h"
#include "platform/last_error.h"
#include "platform/paths.h"

namespace pv::platform {
namespace {

constexpr std::size_t kBlock = 65536;  // bytes
using Block = std::array<char, kBlock>;

std::optional<std::string> too_large() {
  set_last_system_error(kTooLargeError);
  return std::nullopt;
}

bool copy_blocks(const Descriptor& source, FileReplacement& copy) {
  const auto block = std::make_unique_for_overwrite<Block>();
  while (true) {
    const std::ptrdiff_t got = read_block(source, *block);
    if (got <= 0) return got == 0;
    if (!copy.write({block->data(), static_cast<std::size_t>(got)})) return false;
  }
}

}  // namespace

std::optional<std::string> read_whole_file(std::string_view path, std::size_t limit) {
  const auto found = existing_path(path);
  if (!found) return std::nullopt;
  const Descriptor file = open_regular_file(*found);
  if (!file.is_open()) return std::nullopt;
  const auto size = file_size(file);
  if (!size) return std::nullopt;
  if (*size > limit) return too_large();

  // One byte more than the size, so that the end is met in the same read; a file that grows meanwhile is read on.
  std::string bytes(static_cast<std::size_t>(*size) + 1, '\0');
  std::size_t filled = 0;
  while (true) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + kBlock);
    const std::ptrdiff_t got = read_block(file, std::span(bytes).subspan(filled));
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
    if (filled > limit) return too_large();
  }
  bytes.resize(filled);
  return bytes;
}

bool copy_file(std::string_view from, std::string_view to) {
  const auto found = existing_path(from);
  if (!found) return false;
  const Descriptor source = open_regular_file(*found);
  if (!source.is_open()) return false;
  FileReplacement copy(to, temporary_beside(to), FileMode::kBinary, TargetName::kAsSpelt);
  return copy.is_open() && copy_blocks(source, copy) && copy.commit();
}

}  // namespace pv::platform
