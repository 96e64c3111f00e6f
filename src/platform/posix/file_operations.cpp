// Whole files: reading, copying, removing, renaming.
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "platform/file.h"
#include "platform/paths.h"
#include "platform/posix/descriptor.h"
#include "platform/posix/file_faults.h"
#include "platform/posix/path_parts.h"

namespace pv::platform {
namespace {

constexpr std::size_t kBlock = 65536;  // bytes
using Block = std::array<char, kBlock>;

std::optional<std::string> refused(int error) {
  errno = error;
  return std::nullopt;
}

// As the system will be asked for it: spelt as given when nothing is found, so that the error is the system's own, and
// a link that leads nowhere can be removed.
std::string found_or_as_spelt(std::string_view path) {
  auto found = existing_path(path);
  return found ? *std::move(found) : system_form(path);
}

bool copy_blocks(const Descriptor& source, FileReplacement& copy) {
  const auto block = std::make_unique_for_overwrite<Block>();
  while (true) {
    const ssize_t got = read_block(source, *block);
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
  struct stat status;
  if (::fstat(file.number(), &status) != 0) return std::nullopt;
  if (static_cast<std::uintmax_t>(status.st_size) > limit) return refused(EFBIG);

  // One byte more than the size, so that the end is met in the same read; a file that grows meanwhile is read on.
  std::string bytes(static_cast<std::size_t>(status.st_size) + 1, '\0');
  std::size_t filled = 0;
  while (true) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + kBlock);
    const ssize_t got = read_block(file, std::span(bytes).subspan(filled));
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
    if (filled > limit) return refused(EFBIG);
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

bool remove_file(std::string_view path) {
  const std::string found = found_or_as_spelt(path);
  return !fails_for_test(FileOperation::kRemove) && ::unlink(found.c_str()) == 0;
}

bool rename_file(std::string_view from, std::string_view to) {
  const std::string old_name = found_or_as_spelt(from);
  std::string new_name = creatable_path(to);
  // The file itself under its new spelling.
  if (new_name == old_name) new_name = path_in_existing_directory(to);
  return !fails_for_test(FileOperation::kRename) && std::rename(old_name.c_str(), new_name.c_str()) == 0;
}

}  // namespace pv::platform
