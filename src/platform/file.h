// Files as the agent uses them: read line by line or in blocks, written whole, replaced in one step.
//
// Paths are looked up as platform/paths.h says. Files are opened so that started programs do not inherit them.
//
// Failure policy: a file counts as written only when write, flush and close all succeeded; every call says so. Nothing
// is retried. The system's reason of the last failure is in platform/system_error.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pv::platform {

// Text: the bytes on disk end their lines in CR LF, the program sees "\n" (a CR without LF stays as it is).
enum class FileMode { kText, kBinary };

// A regular file open for reading. Movable; used by one thread at a time.
class InputFile {
 public:
  InputFile();
  ~InputFile();
  InputFile(InputFile&&) noexcept;
  InputFile& operator=(InputFile&&) noexcept;

  // False when there is no such file, it may not be read, or it is no regular file (a directory, a FIFO: no hang).
  [[nodiscard]] bool open(std::string_view path, FileMode mode);
  bool is_open() const;

  // The next line, its line end included: at most `capacity` - 1 bytes, as a longer line is given in pieces, each piece
  // a line of its own. `capacity` is at least 2 and at most kLargestLine. NUL bytes are given as they are. nullopt at
  // the end of the file and when a read fails. The view stays valid until the next call on this object, and its bytes
  // may be changed by nobody.
  std::optional<std::string_view> read_line(std::size_t capacity);
  static constexpr std::size_t kLargestLine = 32768;  // bytes

  // Fills `block` as far as the file goes; fewer bytes only at the end of the file or when a read fails. 0: nothing
  // left.
  std::size_t read(std::span<char> block);

  // How often the system was asked for a block of the file.
  std::uint32_t blocks_read() const;

  // Whether a read failed, as opposed to having met the end of the file.
  bool failed() const;

 private:
  struct State;  // the system's handle and one fixed buffer, whatever the size of the file
  struct GiveBack {
    void operator()(State* state) const noexcept;
  };
  friend void release_read_buffers() noexcept;
  std::unique_ptr<State, GiveBack> state_;
};

// Files that were closed leave their buffers to those that are opened next, a few at most; this gives them up.
void release_read_buffers() noexcept;

enum class Disposition {
  kReplace,    // an existing file is emptied
  kAppend,     // every write goes to the end, also when other processes append
  kCreateNew,  // fails when the file exists
};

// A file open for writing. Movable; used by one thread at a time. A file destroyed without close() is closed, and what
// was not flushed may be lost.
class OutputFile {
 public:
  OutputFile();
  ~OutputFile();
  OutputFile(OutputFile&&) noexcept;
  OutputFile& operator=(OutputFile&&) noexcept;

  // False when the file cannot be created or is neither a regular file nor a character device.
  [[nodiscard]] bool open(std::string_view path, FileMode mode, Disposition disposition);
  bool is_open() const;
  // After a failed write every later call fails too, close() included.
  [[nodiscard]] bool write(std::string_view bytes);
  // Hands everything written so far to the system.
  [[nodiscard]] bool flush();
  // False when anything since open() failed; the file is closed in any case.
  [[nodiscard]] bool close();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// How the file to be replaced is found.
enum class TargetName {
  kAnyCase,  // as platform/paths.h says
  kAsSpelt,  // for names that are made to be unique: the directory, which may hold very many, is not searched for
             // others
};

// A name for a temporary file beside `path` that no other file has: "_<name>.<32 hexadecimal digits>.tmp" in its
// directory.
std::string temporary_beside(std::string_view path);

// Replaces a file in one step: the new content is written to `temporary` (in the same directory) and renamed over
// `target` by commit(). Until commit() has returned true the target keeps its old bytes; a replacement that is
// destroyed without it, or whose commit failed, removes the temporary file. The new file has the access rights of the
// old one.
class FileReplacement {
 public:
  // The temporary file is created anew; a left-over of that name is overwritten. Check is_open().
  FileReplacement(std::string_view target, std::string_view temporary, FileMode mode,
                  TargetName name = TargetName::kAnyCase);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  bool is_open() const;
  [[nodiscard]] bool write(std::string_view bytes);
  // Writes out, closes and renames. False: the target is as it was.
  [[nodiscard]] bool commit();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// A whole file as bytes. nullopt when it cannot be opened, cannot be read to its end, or is larger than `limit` bytes.
std::optional<std::string> read_whole_file(std::string_view path, std::size_t limit);

// Copies a file's bytes to `to`, replacing a file of that name in one step (as FileReplacement does, through the
// file of temporary_beside); other spellings of its name are other files. False: `to` is as it was.
[[nodiscard]] bool copy_file(std::string_view from, std::string_view to);

// Removes a file (no directory). False when there is none or it cannot be removed.
[[nodiscard]] bool remove_file(std::string_view path);

// Gives a file another name in the same file system, replacing a file of that name in one step.
[[nodiscard]] bool rename_file(std::string_view from, std::string_view to);

// Test hook: makes file operations fail. Every open, read, write, flush, close, rename, remove and directory
// creation of this process asks `hook` first and fails in the given manner when it answers true. nullptr takes the hook
// away. Install it while no other thread uses files.
enum class FileOperation { kOpen, kRead, kWrite, kFlush, kClose, kRename, kRemove, kCreateDirectory };
enum class FileFailure { kNoSpace, kInputOutput, kNoPermission, kTooManyFiles };
using FileOperationHook = bool (*)(FileOperation operation);
void set_file_operation_hook_for_test(FileOperationHook hook, FileFailure failure = FileFailure::kNoSpace);

}  // namespace pv::platform
