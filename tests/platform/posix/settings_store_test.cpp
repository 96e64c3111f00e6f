#include "platform/settings_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>

#include "platform/environment.h"
#include "platform/settings_store_fixture.h"

namespace pv {
namespace {

namespace fs = std::filesystem;
using platform::read_number_setting;
using platform::write_number_setting;
using test::kFile;
using test::kKey;
using test::SettingsStore;
using testing::ElementsAre;

struct stat status_of(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(::lstat(path.c_str(), &status), 0);
  return status;
}

TEST_F(SettingsStore, ANewFileHasTheRightsOfTheOldOne) {
  write("dword:1");
  ASSERT_EQ(::chmod(directory_.path(kFile).c_str(), 0640), 0);
  EXPECT_TRUE(write_number_setting(kKey, "n", 2));
  EXPECT_EQ(status_of(directory_.path(kFile)).st_mode & 0777, 0640U);
}

TEST_F(SettingsStore, AFileThatHoldsTheValueIsNotTouched) {
  write("dword:1");
  const struct stat before = status_of(directory_.path(kFile));
  EXPECT_TRUE(write_number_setting(kKey, "n", 1));
  const struct stat after = status_of(directory_.path(kFile));
  EXPECT_EQ(after.st_ino, before.st_ino);
  EXPECT_EQ(after.st_ctim.tv_nsec, before.st_ctim.tv_nsec);
}

TEST_F(SettingsStore, WritesBehindLinks) {
  directory_.make_directory("real");
  fs::create_symlink("real/link", directory_.path(kFile));
  fs::create_symlink(directory_.path("real/file"), directory_.path("real/link"));
  EXPECT_TRUE(write_number_setting(kKey, "n", 1));
  EXPECT_TRUE(write_number_setting(kKey, "n", 2));
  EXPECT_TRUE(fs::is_symlink(directory_.path(kFile)));
  EXPECT_THAT(directory_.names("real"), ElementsAre("file", "file.lock", "link"));
  EXPECT_EQ(read_number_setting(kKey, "n"), 2U);
}

TEST_F(SettingsStore, LeavesAFifoAlone) {
  ASSERT_EQ(::mkfifo(directory_.path("fifo").c_str(), 0600), 0);
  for (const char* name : {"fifo", "fifo/file"}) {
    platform::use_settings_file(directory_.path(name));
    EXPECT_EQ(read_number_setting(kKey, "n"), std::nullopt) << name;
    EXPECT_FALSE(write_number_setting(kKey, "n", 2)) << name;
  }
  EXPECT_TRUE(fs::is_fifo(directory_.path("fifo")));
}

TEST_F(SettingsStore, TakesWhatItHasWhenNoFileCanBeOpened) {
  write("dword:1");
  EXPECT_EQ(read_number_setting(kKey, "n"), 1U);
  write("dword:00000002");
  rlimit limit{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit none{0, limit.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const std::optional<std::uint32_t> meanwhile = read_number_setting(kKey, "n");
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
  EXPECT_EQ(meanwhile, 1U);
  EXPECT_EQ(read_number_setting(kKey, "n"), 2U);
}

TEST_F(SettingsStore, HasItsUsualFileWhenNothingNamesOne) {
  const std::optional<std::string> before = platform::environment_variable("PVMTAFILTER_SETTINGS");
  platform::set_environment_variable("PVMTAFILTER_SETTINGS", "");
  platform::use_settings_file({});
  EXPECT_EQ(platform::settings_location(), "/etc/pvmtafilter/settings.reg");
  platform::set_environment_variable("PVMTAFILTER_SETTINGS", before.value_or(""));
}

TEST_F(SettingsStore, ProcessesLoseNoneOfEachOthersWrites) {
  const pid_t writing = ::fork();
  if (writing == 0) ::_exit(test::write_numbers("child"));
  EXPECT_EQ(test::write_numbers("parent"), 0);
  int status = -1;
  EXPECT_EQ(::waitpid(writing, &status, 0), writing);
  EXPECT_EQ(status, 0);
  test::expect_numbers("parent");
  test::expect_numbers("child");
}

}  // namespace
}  // namespace pv
