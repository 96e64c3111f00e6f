#include "platform/file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "platform/last_error.h"
#include "platform/log_stream.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::Disposition;
using platform::FileMode;
using platform::FileOperation;
using platform::FileReplacement;
using platform::OutputFile;
using test::TemporaryDirectory;
using ::testing::ElementsAre;

// Lets one file operation fail, or that one and all after it.
class Failure {
 public:
  explicit Failure(int operation, bool lasting = false) {
    left_ = operation;
    lasting_ = lasting;
    platform::set_file_operation_hook_for_test([](FileOperation) { return --left_ == 0 || (lasting_ && left_ < 0); });
  }
  ~Failure() { platform::set_file_operation_hook_for_test(nullptr); }
  static bool reached() { return left_ <= 0; }

 private:
  static inline int left_ = 0;
  static inline bool lasting_ = false;
};

bool replace(const std::string& target, const std::string& temporary) {
  FileReplacement file(target, temporary, FileMode::kText);
  return file.is_open() && file.write("new") && file.write("\n") && file.commit();
}

TEST(OutputFile, TextModeStoresEveryLineFeedAsAPair) {
  const TemporaryDirectory directory;
  std::mt19937 random(1);
  for (const FileMode mode : {FileMode::kText, FileMode::kBinary}) {
    std::string expected;
    OutputFile file;
    ASSERT_TRUE(file.open(directory.path("file"), mode, Disposition::kReplace));
    for (const std::size_t size : {0u, 6u, 32762u, 32768u, 1u, 32768u, 3u, 32769u, 100000u}) {
      std::string block(size, 'x');
      for (char& c : block) c = "\n\rabcdefgh"[random() % 10];
      ASSERT_TRUE(file.write(block));
      for (const char c : block) expected += c == '\n' && mode == FileMode::kText ? "\r\n" : std::string(1, c);
    }
    ASSERT_TRUE(file.close());
    EXPECT_EQ(directory.read("file"), expected);
  }
}

TEST(OutputFile, DispositionsDecideAboutAnExistingFile) {
  const TemporaryDirectory directory;
  directory.write("File", "old");
  OutputFile file;
  EXPECT_FALSE(file.open(directory.path("FILE"), FileMode::kBinary, Disposition::kCreateNew));
  EXPECT_EQ(platform::last_system_error(), platform::kExistsError);
  ASSERT_TRUE(file.open(directory.path("FILE"), FileMode::kBinary, Disposition::kAppend));
  EXPECT_TRUE(file.write("+new") && file.close());
  EXPECT_EQ(directory.read("File"), "old+new");
  ASSERT_TRUE(file.open(directory.path("FILE"), FileMode::kBinary, Disposition::kReplace));
  EXPECT_TRUE(file.write("new") && file.close());
  EXPECT_EQ(directory.read("File"), "new");
  EXPECT_THAT(directory.names(""), ElementsAre("File"));
}

TEST(OutputFile, AnErrorStaysUntilTheFileIsClosed) {
  const TemporaryDirectory directory;
  OutputFile file;
  ASSERT_TRUE(file.open(directory.path("file"), FileMode::kBinary, Disposition::kAppend));
  EXPECT_TRUE(file.write("buffered"));
  {
    const Failure failure(1);
    EXPECT_FALSE(file.flush());
  }
  platform::set_last_system_error(0);
  EXPECT_FALSE(file.write(""));
  EXPECT_EQ(platform::last_system_error(), platform::kDiskFullError);
  EXPECT_FALSE(file.close());
  EXPECT_FALSE(file.is_open());
  EXPECT_FALSE(file.write("closed"));
}

TEST(Files, WhatIsNoFileIsRefusedAtOnce) {
  const TemporaryDirectory directory;
  directory.make_directory("directory");
  directory.write("file", "x");
  for (const char* name : {"directory", "none/file"}) {
    const std::string path = directory.path(name);
    platform::InputFile input;
    OutputFile output;
    EXPECT_FALSE(input.open(path, FileMode::kText)) << name;
    EXPECT_FALSE(output.open(path, FileMode::kText, Disposition::kAppend)) << name;
    EXPECT_FALSE(replace(path, directory.path("_new"))) << name;
    EXPECT_EQ(platform::read_whole_file(path, 100), std::nullopt) << name;
    EXPECT_FALSE(platform::copy_file(path, directory.path("copy"))) << name;
    EXPECT_FALSE(platform::copy_file(directory.path("file"), path)) << name;
    EXPECT_EQ(platform::open_log_stream(path), nullptr) << name;
  }
  EXPECT_FALSE(platform::remove_file(directory.path("directory")));
  EXPECT_THAT(directory.names(""), ElementsAre("directory", "file"));
}

TEST(ReadWholeFile, LimitIsTheLargestSize) {
  const TemporaryDirectory directory;
  directory.write("file", "12345");
  EXPECT_EQ(platform::read_whole_file(directory.path("FILE"), 5), "12345");
  EXPECT_EQ(platform::read_whole_file(directory.path("file"), 4), std::nullopt);
  EXPECT_EQ(platform::read_whole_file(directory.path("none"), 5), std::nullopt);
  EXPECT_EQ(platform::last_system_error(), 2);
}

TEST(FileReplacement, AnyFailureLeavesTheOldFile) {
  for (const bool left_over : {false, true}) {
    for (int n = 1; n == 1 || Failure::reached(); ++n) {
      const TemporaryDirectory directory;
      directory.write("target", "old");
      if (left_over) directory.write("_target", "left over");
      const Failure failure(n);
      const bool replaced = replace(directory.path("target"), directory.path("_target"));
      const int error = platform::last_system_error();
      EXPECT_EQ(replaced, !Failure::reached()) << n;
      EXPECT_EQ(directory.read("target"), replaced ? "new\r\n" : "old") << n;
      EXPECT_TRUE(replaced || error == platform::kDiskFullError) << n;
      EXPECT_TRUE(left_over || directory.names("").size() == 1) << n;
    }
  }
}

TEST(FileReplacement, ADiskThatStaysFullLeavesTheOldFile) {
  for (int n = 1; n == 1 || Failure::reached(); ++n) {
    const TemporaryDirectory directory;
    directory.write("target", "old");
    const Failure failure(n, true);
    const bool replaced = replace(directory.path("target"), directory.path("_target"));
    EXPECT_EQ(directory.read("target"), replaced ? "new\r\n" : "old") << n;
    EXPECT_EQ(replaced, !Failure::reached()) << n;
  }
}

TEST(FileReplacement, WithoutCommitNothingRemains) {
  const TemporaryDirectory directory;
  directory.write("target", "old");
  {
    FileReplacement file(directory.path("target"), directory.path("_target"), FileMode::kBinary);
    ASSERT_TRUE(file.write("new"));
    EXPECT_THAT(directory.names(""), ElementsAre("_target", "target"));
  }
  EXPECT_THAT(directory.names(""), ElementsAre("target"));
  EXPECT_EQ(directory.read("target"), "old");
  FileReplacement onto_itself(directory.path("target"), directory.path("target"), FileMode::kBinary);
  EXPECT_FALSE(onto_itself.is_open());
  EXPECT_EQ(directory.read("target"), "old");
}

// An administrator's viewer, or another thread of the agent, may be reading the message.
TEST(FileReplacement, WorksWhileTheOldFileIsBeingRead) {
  const TemporaryDirectory directory;
  directory.write("target", "old");
  platform::InputFile reader;
  ASSERT_TRUE(reader.open(directory.path("target"), FileMode::kBinary));
  EXPECT_TRUE(replace(directory.path("target"), directory.path("_target")));
  EXPECT_EQ(directory.read("target"), "new\r\n");
  EXPECT_EQ(reader.read_line(10), "old");
  EXPECT_TRUE(platform::remove_file(directory.path("target"))) << "the reader of the old file is none of its own";
  reader = platform::InputFile();
  EXPECT_THAT(directory.names(""), ElementsAre());
}

TEST(CopyFile, AnyFailureLeavesTheTargetAndTheSource) {
  const std::string bytes = std::string(200000, '\r') + "\n" + '\0';
  for (const char* source : {"from", "_to", "to"}) {  // "_to" is the name of the temporary file
    for (int n = 1; n == 1 || Failure::reached(); ++n) {
      const TemporaryDirectory directory;
      directory.write("to", "old");
      directory.write(source, bytes);
      const std::string before = directory.read("to");
      const auto names = directory.names("");
      const Failure failure(n);
      const bool copied = platform::copy_file(directory.path(source), directory.path("to"));
      EXPECT_EQ(copied, !Failure::reached()) << n;
      EXPECT_EQ(directory.read("to") == bytes, copied || before == bytes) << n;
      EXPECT_EQ(directory.read(source), bytes) << source;
      EXPECT_EQ(directory.names(""), names) << source << n;
    }
  }
}

TEST(RenameFile, ReplacesWhateverTheCase) {
  const TemporaryDirectory directory;
  directory.write("a", "1");
  directory.write("B", "2");
  EXPECT_TRUE(platform::rename_file(directory.path("A"), directory.path("B")));
  EXPECT_THAT(directory.names(""), ElementsAre("B"));
  EXPECT_EQ(directory.read("B"), "1");
  EXPECT_TRUE(platform::rename_file(directory.path("b"), directory.path("b")));
  EXPECT_FALSE(platform::rename_file(directory.path("none"), directory.path("b")));
  EXPECT_TRUE(platform::remove_file(directory.path("B")));
  EXPECT_FALSE(platform::remove_file(directory.path("B")));
  EXPECT_EQ(platform::last_system_error(), 2);
}

TEST(LogStream, OneFlushIsOneAppendedPiece) {
  const TemporaryDirectory directory;
  std::FILE* one = platform::open_log_stream(directory.path("log"));
  std::FILE* two = platform::open_log_stream(directory.path("LOG"));
  ASSERT_TRUE(one != nullptr && two != nullptr);
  const std::string line(20000, 'x');
  std::fprintf(one, "%s", line.c_str());
  std::fprintf(two, "two\n");
  std::fflush(two);
  std::fprintf(one, "one\n");
  std::fflush(one);
  const std::string large(150000, '\n');
  EXPECT_EQ(std::fwrite(large.data(), 1, large.size(), one), large.size());
  EXPECT_EQ(std::fclose(one), 0);
  EXPECT_EQ(std::fclose(two), 0);
  std::string expected = "two\r\n" + line + "one\r\n";
  for (std::size_t i = 0; i < large.size(); ++i) expected += "\r\n";
  EXPECT_EQ(directory.read("log"), expected);
}

}  // namespace
}  // namespace pv
