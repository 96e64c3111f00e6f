// What only this system's files do: FIFOs, links, access rights, closed standard streams.
#include "platform/file.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/log_stream.h"
#include "platform/system_error.h"
#include "support/server_tree.h"

namespace pv {
namespace {

namespace fs = std::filesystem;
using platform::Disposition;
using platform::FileMode;
using platform::FileReplacement;
using platform::OutputFile;
using test::TemporaryDirectory;
using ::testing::ElementsAre;

TEST(OutputFile, AFullDeviceShowsInTheFlush) {
  OutputFile file;
  ASSERT_TRUE(file.open("/dev/full", FileMode::kBinary, Disposition::kAppend));
  EXPECT_TRUE(file.write("buffered"));
  EXPECT_FALSE(file.flush());
  EXPECT_EQ(platform::last_system_error(), ENOSPC);
  EXPECT_FALSE(file.close());
}

TEST(Files, FifosAreRefusedAtOnce) {
  const TemporaryDirectory directory;
  directory.write("file", "x");
  ASSERT_EQ(::mkfifo(directory.path("fifo").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo(directory.path("read fifo").c_str(), 0600), 0);
  const int reader = ::open(directory.path("read fifo").c_str(), O_RDONLY | O_NONBLOCK);
  for (const char* name : {"fifo", "read fifo"}) {
    const std::string path = directory.path(name);
    platform::InputFile input;
    OutputFile output;
    EXPECT_FALSE(input.open(path, FileMode::kText)) << name;
    EXPECT_FALSE(output.open(path, FileMode::kText, Disposition::kAppend)) << name;
    EXPECT_FALSE(FileReplacement(path, directory.path("_new"), FileMode::kText).is_open()) << name;
    EXPECT_EQ(platform::read_whole_file(path, 100), std::nullopt) << name;
    EXPECT_FALSE(platform::copy_file(path, directory.path("copy"))) << name;
    EXPECT_FALSE(platform::copy_file(directory.path("file"), path)) << name;
    EXPECT_EQ(platform::open_log_stream(path), nullptr) << name;
  }
  EXPECT_FALSE(FileReplacement("/dev/null", directory.path("_null"), FileMode::kBinary).is_open());
  EXPECT_THAT(directory.names(""), ElementsAre("fifo", "file", "read fifo"));
  ::close(reader);
}

TEST(ReadWholeFile, AFileMayBeLargerThanItsSizeSays) {
  EXPECT_EQ(platform::read_whole_file("/proc/self/status", 5), std::nullopt);
}

TEST(FileReplacement, KeepsAccessRightsAndLinks) {
  const TemporaryDirectory directory;
  directory.write("real/file", "old");
  fs::permissions(directory.path("real/file"), fs::perms(0640));
  fs::create_symlink(directory.path("real/file"), directory.path("link"));
  directory.write("victim", "untouched");
  fs::create_symlink(directory.path("victim"), directory.path("real/_temporary"));
  FileReplacement file(directory.path("LINK"), directory.path("_temporary"), FileMode::kBinary);
  ASSERT_TRUE(file.write("new") && file.commit());
  EXPECT_TRUE(fs::is_symlink(directory.path("link")));
  EXPECT_EQ(directory.read("real/file"), "new");
  EXPECT_EQ(fs::status(directory.path("real/file")).permissions(), fs::perms(0640));
  EXPECT_EQ(directory.read("victim"), "untouched") << "a left-over link was written through";
  EXPECT_THAT(directory.names("real"), ElementsAre("file"));
}

TEST(RenameFile, AReplacedFileKeepsItsSpellingAndOneRenamedToItselfGetsTheNew) {
  const TemporaryDirectory directory;
  directory.write("a", "1");
  directory.write("B", "2");
  EXPECT_TRUE(platform::rename_file(directory.path("A"), directory.path("b")));
  EXPECT_THAT(directory.names(""), ElementsAre("B"));
  EXPECT_EQ(directory.read("B"), "1");
  EXPECT_TRUE(platform::rename_file(directory.path("b"), directory.path("b")));
  EXPECT_THAT(directory.names(""), ElementsAre("b"));
}

TEST(LogStream, ALineCutByAFullDiskIsEndedBeforeTheNext) {
  const test::TemporaryDirectory directory;
  std::FILE* stream = platform::open_log_stream(directory.path("log"));
  ASSERT_NE(stream, nullptr);
  const auto old_action = ::signal(SIGXFSZ, SIG_IGN);
  rlimit old_limit;
  ::getrlimit(RLIMIT_FSIZE, &old_limit);
  const rlimit five_bytes{5, old_limit.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &five_bytes);
  std::fputs("a long line\n", stream);
  EXPECT_NE(std::fflush(stream), 0);
  ::setrlimit(RLIMIT_FSIZE, &old_limit);
  ::signal(SIGXFSZ, old_action);
  std::fputs("the next\n", stream);
  std::fclose(stream);
  EXPECT_EQ(directory.read("log"), "a lon\r\nthe next\r\n");
}

// What a service that closed its standard streams prints must not end up in the next file that is opened.
TEST(Files, NeverTakeTheNumbersOfTheStandardStreams) {
  const test::TemporaryDirectory directory;
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(STDIN_FILENO);
    ::close(STDOUT_FILENO);
    platform::OutputFile file;
    const bool opened = file.open(directory.path("a"), FileMode::kBinary, Disposition::kReplace);
    const bool free = ::fcntl(STDIN_FILENO, F_GETFD) < 0 && ::fcntl(STDOUT_FILENO, F_GETFD) < 0;
    ::_exit(opened && free ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace pv
