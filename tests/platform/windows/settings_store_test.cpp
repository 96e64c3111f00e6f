#include "platform/settings_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>

#include "platform/environment.h"
#include "platform/settings_store_fixture.h"
#include "platform/windows/child_process.h"

namespace pv {
namespace {

using platform::read_number_setting;
using platform::write_number_setting;
using test::kFile;
using test::kKey;
using test::SettingsStore;
using testing::ElementsAre;

TEST_F(SettingsStore, IsTheRegistryWhenNothingNamesAFile) {
  const std::optional<std::string> before = platform::environment_variable("PVMTAFILTER_SETTINGS");
  platform::set_environment_variable("PVMTAFILTER_SETTINGS", "");
  platform::use_settings_file({});
  EXPECT_EQ(platform::settings_location(), "HKEY_LOCAL_MACHINE (32-bit view)");
  platform::set_environment_variable("PVMTAFILTER_SETTINGS", before.value_or(""));
}

TEST_F(SettingsStore, TakesWhatItHasWhileSomebodyHasTheFileToHimself) {
  write("dword:1");
  EXPECT_EQ(read_number_setting(kKey, "n"), 1U);
  write("dword:00000002");
  const HANDLE file =
      ::CreateFileA(directory_.path(kFile).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  EXPECT_EQ(read_number_setting(kKey, "n"), 1U);
  ::CloseHandle(file);
  EXPECT_EQ(read_number_setting(kKey, "n"), 2U);
}

TEST_F(SettingsStore, AReadOnlyFileIsNotReplaced) {
  write("dword:1");
  ASSERT_TRUE(::SetFileAttributesA(directory_.path(kFile).c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_FALSE(write_number_setting(kKey, "n", 2));
  EXPECT_EQ(read_number_setting(kKey, "n"), 1U);
  EXPECT_THAT(directory_.names(""), ElementsAre(kFile, "settings.reg.lock"));
  ASSERT_TRUE(::SetFileAttributesA(directory_.path(kFile).c_str(), FILE_ATTRIBUTE_NORMAL));
  EXPECT_TRUE(write_number_setting(kKey, "n", 2));
}

TEST_F(SettingsStore, ProcessesLoseNoneOfEachOthersWrites) {
  const test::ChildProcess child("write \"" + directory_.path(kFile) + "\" child");
  EXPECT_EQ(test::write_numbers("parent"), 0);
  EXPECT_EQ(child.exit_status(), 0U);
  test::expect_numbers("parent");
  test::expect_numbers("child");
}

}  // namespace
}  // namespace pv
