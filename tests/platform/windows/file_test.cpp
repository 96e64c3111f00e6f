// What only this system's files do: sharing, devices, error numbers.
#include "platform/file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/environment.h"
#include "platform/log_stream.h"
#include "platform/system_error.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::Disposition;
using platform::FileMode;
using platform::InputFile;
using platform::OutputFile;
using test::TemporaryDirectory;
using ::testing::ElementsAre;

struct ErrorCase {
  const char* what;
  const char* path;  // below a directory with the entry "directory"
  int error;
};

constexpr ErrorCase kErrors[] = {
    {"no such file", "none", ERROR_FILE_NOT_FOUND},
    {"no such directory", "none\\file", ERROR_PATH_NOT_FOUND},
    {"a directory", "directory", ERROR_ACCESS_DENIED},
};

TEST(Files, FailWithTheSystemsOwnNumbers) {
  const TemporaryDirectory directory;
  directory.make_directory("directory");
  for (const ErrorCase& c : kErrors) {
    InputFile file;
    EXPECT_FALSE(file.open(directory.path(c.path), FileMode::kText)) << c.what;
    EXPECT_EQ(platform::last_system_error(), c.error) << c.what;
    EXPECT_EQ(platform::read_whole_file(directory.path(c.path), 10), std::nullopt) << c.what;
    EXPECT_EQ(platform::last_system_error(), c.error) << c.what;
  }
  EXPECT_NE(platform::system_error_text(ERROR_ACCESS_DENIED), platform::system_error_text(ERROR_FILE_NOT_FOUND));
  EXPECT_EQ(platform::system_error_text(ERROR_ACCESS_DENIED).find_first_of("\r\n"), std::string::npos);
}

TEST(Files, DevicesAreNoFilesToRead) {
  InputFile input;
  EXPECT_FALSE(input.open("NUL", FileMode::kText));
  OutputFile output;
  EXPECT_TRUE(output.open("NUL", FileMode::kText, Disposition::kAppend));
}

TEST(Files, MayBeMovedAndRemovedWhileTheyAreOpen) {
  const TemporaryDirectory directory;
  OutputFile output;
  ASSERT_TRUE(output.open(directory.path("file"), FileMode::kBinary, Disposition::kCreateNew));
  std::FILE* log = platform::open_log_stream(directory.path("log"));
  ASSERT_NE(log, nullptr);
  InputFile input;
  EXPECT_TRUE(input.open(directory.path("file"), FileMode::kBinary));
  EXPECT_TRUE(platform::rename_file(directory.path("file"), directory.path("moved")));
  EXPECT_TRUE(platform::remove_file(directory.path("log")));
  EXPECT_TRUE(output.write("1") && output.close());
  std::fclose(log);
  EXPECT_THAT(directory.names(""), ElementsAre("moved"));
  EXPECT_EQ(directory.read("moved"), "1");
}

// What somebody holds without sharing it cannot be replaced, and must stay whole.
TEST(FileReplacement, LeavesAFileThatIsNotShared) {
  const TemporaryDirectory directory;
  directory.write("target", "old");
  const HANDLE holder = ::CreateFileA(directory.path("target").c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  {
    platform::FileReplacement file(directory.path("target"), directory.path("_target"), FileMode::kBinary);
    EXPECT_TRUE(file.write("new"));
    EXPECT_FALSE(file.commit());
  }
  EXPECT_EQ(directory.read("target"), "old");
  ::CloseHandle(holder);
  EXPECT_THAT(directory.names(""), ElementsAre("target"));
}

TEST(FileReplacement, OntoItselfInAnotherCaseIsRefused) {
  const TemporaryDirectory directory;
  directory.write("target", "old");
  EXPECT_FALSE(
      platform::FileReplacement(directory.path("target"), directory.path("TARGET"), FileMode::kText).is_open());
  EXPECT_EQ(directory.read("target"), "old");
}

TEST(Environment, BothCopiesAreSet) {
  platform::set_environment_variable("PV_TEST_VARIABLE", "value");
  EXPECT_STREQ(std::getenv("PV_TEST_VARIABLE"), "value");
  EXPECT_EQ(platform::environment_variable("PV_TEST_VARIABLE"), "value");
  platform::set_environment_variable("PV_TEST_VARIABLE", "");
  EXPECT_EQ(platform::environment_variable("PV_TEST_VARIABLE"), "");
  EXPECT_EQ(platform::environment_variable("PV_TEST_NO_VARIABLE"), std::nullopt);
  platform::set_environment_variable("PV_TEST_VARIABLE", std::string(1000, 'x'));
  EXPECT_EQ(platform::environment_variable("PV_TEST_VARIABLE"), std::string(1000, 'x'));
}

}  // namespace
}  // namespace pv
