#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "platform/file.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::FileMode;
using platform::InputFile;
using test::TemporaryDirectory;

// What reading means: text mode sees the file with every CR LF as LF, and a line of `capacity` is what fgets gives.
class SlowReader {
 public:
  SlowReader(std::string bytes, FileMode mode) : rest_(std::move(bytes)) {
    if (mode == FileMode::kBinary) return;
    for (auto pair = rest_.find("\r\n"); pair != std::string::npos; pair = rest_.find("\r\n", pair)) {
      rest_.erase(pair, 1);
      ++pair;
    }
  }

  std::optional<std::string> read_line(std::size_t capacity) {
    std::string line;
    while (taken_ < rest_.size() && line.size() + 1 < capacity && !line.ends_with('\n')) line += rest_[taken_++];
    return line.empty() ? std::nullopt : std::optional(line);
  }

  std::string read(std::size_t count) {
    const std::string block = rest_.substr(taken_, count);
    taken_ += block.size();
    return block;
  }

 private:
  std::string rest_;
  std::size_t taken_ = 0;
};

struct LineCase {
  const char* what;
  std::string bytes;
  std::size_t capacity;
};

const LineCase kLines[] = {
    {"an empty file", "", 10},
    {"no line end at the end", "ab\r\ncd", 10},
    {"the pair just fits", "abc\r\nd\r\n", 5},
    {"the pair just does not fit", "abcd\r\nd\r\n", 5},
    {"a CR that is data at the cut", "abc\rd\r\n", 5},
    {"the smallest capacity", "a\r\n\r\n\r\r\n", 2},
    {"two CR before LF", "a\r\r\nb", 10},
    {"a CR at the end of the file", "ab\r", 10},
    {"a CR at the end of the file and of the piece", "ab\r", 4},
    {"LF alone", "a\nb\n", 10},
    {"NUL and end-of-file characters are bytes", std::string("a\0b\x1a\r\nc", 7), 10},
    {"a line as long as the largest", std::string(InputFile::kLargestLine - 2, 'x') + "\r\ny", InputFile::kLargestLine},
    {"a line longer than the largest", std::string(InputFile::kLargestLine - 1, 'x') + "\r\ny",
     InputFile::kLargestLine},
    {"a pair across the buffer's end", std::string(65535, 'x') + "\r\ny", 1025},
};

TEST(InputFile, LinesAreThoseOfTheTranslatedText) {
  const TemporaryDirectory directory;
  for (const LineCase& c : kLines) {
    directory.write("file", c.bytes);
    for (const FileMode mode : {FileMode::kText, FileMode::kBinary}) {
      InputFile file;
      ASSERT_TRUE(file.open(directory.path("file"), mode));
      SlowReader slow(c.bytes, mode);
      std::optional<std::string> expected;
      do {
        expected = slow.read_line(c.capacity);
        ASSERT_EQ(file.read_line(c.capacity), expected) << c.what;
      } while (expected);
      EXPECT_FALSE(file.failed());
    }
  }
}

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  // Line ends of every kind, lines of every length, most of it around the edges of a 64 KiB buffer.
  std::string text() {
    std::string bytes(below(3) * 65536 / 2 + below(20), 'a');
    const std::size_t pieces = below(300);
    for (std::size_t i = 0; i < pieces; ++i) bytes += piece();
    return bytes;
  }

  std::size_t capacity() {
    static constexpr std::size_t kLimits[] = {4, 20, 1024, InputFile::kLargestLine - 2};
    return 2 + below(kLimits[below(4)]);
  }

 private:
  std::string piece() {
    static constexpr std::string_view kPieces[] = {"\r\n", "\r\n", "\n", "\r", "\r\r\n", {"\0", 1}, "x", "word "};
    const std::size_t which = below(std::size(kPieces) + 2);
    if (which < std::size(kPieces)) return std::string(kPieces[which]);
    return std::string(below(which == std::size(kPieces) ? 100 : 3000), 'y');
  }

  std::mt19937 random_;
};

TEST(InputFile, ReadsAsTheSlowReaderWhateverIsAskedNext) {
  const TemporaryDirectory directory;
  for (unsigned seed = 0; seed < 300; ++seed) {
    Generator generate(seed);
    const std::string bytes = generate.text();
    directory.write("file", bytes);
    const FileMode mode = generate.below(4) == 0 ? FileMode::kBinary : FileMode::kText;
    const std::size_t blocks_in_ten = generate.below(4);
    InputFile file;
    ASSERT_TRUE(file.open(directory.path("file"), mode));
    SlowReader slow(bytes, mode);
    for (bool more = true; more;) {
      const std::size_t count = generate.capacity();
      if (generate.below(10) < blocks_in_ten) {
        std::string block(count, '\0');
        block.resize(file.read(block));
        ASSERT_EQ(block, slow.read(count)) << "seed " << seed;
        more = !block.empty();
      } else {
        const auto expected = slow.read_line(count);
        ASSERT_EQ(file.read_line(count), expected) << "seed " << seed << ", capacity " << count;
        more = expected.has_value();
      }
    }
  }
}

TEST(InputFile, AFailedReadIsNoEndOfFile) {
  const TemporaryDirectory directory;
  directory.write("file", "first\r\n" + std::string(70000, 'x'));
  InputFile file;
  ASSERT_TRUE(file.open(directory.path("file"), FileMode::kText));
  EXPECT_EQ(file.read_line(1024), "first\n");
  platform::set_file_operation_hook_for_test([](platform::FileOperation) { return true; });
  std::size_t pieces = 0;
  while (file.read_line(1024)) ++pieces;
  platform::set_file_operation_hook_for_test(nullptr);
  EXPECT_EQ(pieces, (65536 - 7) / 1023) << "what is left of the buffer is no whole piece and must not pass for one";
  EXPECT_TRUE(file.failed());
  EXPECT_EQ(file.read_line(1024), std::nullopt);
}

}  // namespace
}  // namespace pv
