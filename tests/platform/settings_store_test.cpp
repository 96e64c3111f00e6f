#include "platform/settings_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/environment.h"
#include "platform/settings_store_fixture.h"

namespace pv {
namespace {

namespace fs = std::filesystem;
using platform::read_number_setting;
using platform::read_text_setting;
using platform::write_number_setting;
using platform::write_text_setting;
using test::file_with;
using test::kFile;
using test::kKey;
using test::SettingsStore;
using testing::ElementsAre;
using SettingsStoreConcurrent = SettingsStore;

TEST_F(SettingsStore, CutsNoTextAndTakesNoOtherType) {
  write("\"abc\"\n\"empty\"=\"\"\n\"number\"=dword:0000002a");
  std::array<char, 8> out{};
  const auto size_of = [&out](std::string_view name, std::size_t capacity) {
    return read_text_setting(kKey, name, std::span(out).first(capacity));
  };
  EXPECT_EQ(size_of("N", 4), 3U);
  EXPECT_EQ(std::string_view(out.data(), 4), std::string_view("abc\0", 4));
  EXPECT_EQ(size_of("n", 3), std::nullopt);
  EXPECT_EQ(size_of("empty", 1), 0U);
  EXPECT_EQ(size_of("empty", 0), std::nullopt);
  EXPECT_EQ(size_of("number", 8), std::nullopt);
  EXPECT_EQ(read_number_setting(kKey, "number"), 42U);
  EXPECT_EQ(read_number_setting(kKey, "n"), std::nullopt);

  std::vector<std::string> names;
  const auto first_two = [&names](std::string_view name) { return names.emplace_back(name) == "n"; };
  EXPECT_TRUE(platform::for_each_setting_name(R"(software\wow6432node\POST VANE)", first_two));
  EXPECT_THAT(names, ElementsAre("n", "empty"));
  EXPECT_FALSE(platform::for_each_setting_name("SOFTWARE", first_two));
}

TEST_F(SettingsStore, SeesEveryEditAtTheNextRead) {
  EXPECT_EQ(read_number_setting(kKey, "n"), std::nullopt) << "no file yet";
  for (std::uint32_t i = 0; i < 300; ++i) {
    const std::string value = "dword:" + std::to_string(i % 10);
    if (i % 3 == 0) {
      directory_.write("other", file_with(value));
      fs::rename(directory_.path("other"), directory_.path(kFile));
    } else {
      write(value);  // in place and of the same size, often within one tick of the file system's clock
    }
    EXPECT_EQ(read_number_setting(kKey, "n"), i % 10) << i;
  }
  fs::remove(directory_.path(kFile));
  EXPECT_EQ(read_number_setting(kKey, "n"), std::nullopt);
}

TEST_F(SettingsStore, AFileEmptiedBySomeoneWhoWritesInPlaceKeepsItsLastValues) {
  write("dword:00000007");
  EXPECT_EQ(read_number_setting(kKey, "n"), 7U);
  directory_.write(kFile, "");
  EXPECT_EQ(read_number_setting(kKey, "n"), 7U);
  write("dword:00000008");
  EXPECT_EQ(read_number_setting(kKey, "n"), 8U);
}

TEST_F(SettingsStore, WritesOneValueAndKeepsTheRest) {
  write("dword:1 ; one");
  EXPECT_TRUE(write_number_setting(kKey, "N", 2));
  EXPECT_TRUE(write_text_setting(kKey, "t", "\"text\""));
  EXPECT_EQ(directory_.read(kFile), file_with("dword:00000002 ; one\n\"t\"=\"\\\"text\\\"\""));
  EXPECT_THAT(directory_.names(""), ElementsAre(kFile, "settings.reg.lock"));
}

TEST_F(SettingsStore, SeveralNumbersInOneReplacement) {
  using std::chrono::seconds;
  write("dword:00000001");
  const platform::NumberSetting numbers[] = {{kKey, "N", 2}, {kKey, "m", 3}, {"SOFTWARE\\Other", "o", 4}};
  EXPECT_TRUE(platform::write_number_settings(numbers, seconds(5)));
  const std::string written = file_with("dword:00000002") +
                              "\"m\"=dword:00000003\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Other]\n\"o\"=dword:00000004\n";
  EXPECT_EQ(directory_.read(kFile), written);
  EXPECT_EQ(read_number_setting(kKey, "m"), 3U);
  const platform::NumberSetting one_impossible[] = {{kKey, "m", 5}, {kKey, "two\nlines", 6}};
  EXPECT_FALSE(platform::write_number_settings(one_impossible, seconds(5)));
  EXPECT_EQ(directory_.read(kFile), written) << "all or none";
  directory_.write("other", file_with("dword:00000007"));
  fs::rename(directory_.path("other"), directory_.path(kFile));
  EXPECT_EQ(read_number_setting(kKey, "n"), 7U) << "somebody's edit shows at once";
}

TEST_F(SettingsStore, CreatesAMissingFile) {
  EXPECT_TRUE(write_number_setting(kKey, "n", 1));
  EXPECT_TRUE(write_number_setting(kKey, "n", 2));
  EXPECT_EQ(read_number_setting(kKey, "n"), 2U);
  EXPECT_THAT(directory_.names(""), ElementsAre(kFile, "settings.reg.lock"));
}

TEST_F(SettingsStore, WritesNothingThatIsThereAlready) {
  write("dword:1");
  EXPECT_TRUE(write_number_setting(kKey, "n", 1));
  EXPECT_THAT(directory_.names(""), ElementsAre(kFile)) << "not even locked";
}

TEST_F(SettingsStore, LeavesWhatIsNoSettingsFileAlone) {
  directory_.make_directory("directory");
  directory_.write("large", file_with("dword:1"));
  fs::resize_file(directory_.path("large"), (16 << 20) + 1);
  directory_.write("utf-16be", "\xFE\xFF");
  for (const char* name : {"directory", "large", "utf-16be", "missing/file", "large/file"}) {
    platform::use_settings_file(directory_.path(name));
    EXPECT_EQ(read_number_setting(kKey, "n"), std::nullopt) << name;
    EXPECT_FALSE(write_number_setting(kKey, "n", 2)) << name;
  }
  EXPECT_EQ(fs::file_size(directory_.path("large")), (16U << 20) + 1);
  EXPECT_FALSE(directory_.exists("missing"));

  fs::resize_file(directory_.path("large"), 16 << 20);
  platform::use_settings_file(directory_.path("large"));
  EXPECT_EQ(read_number_setting(kKey, "n"), 1U);
}

TEST_F(SettingsStore, ATooLongPathNamesNoFile) {
  platform::use_settings_file(directory_.path(std::string(5000, 'x')));
  EXPECT_EQ(platform::settings_location(), "");
  EXPECT_EQ(read_number_setting(kKey, "n"), std::nullopt);
  EXPECT_FALSE(write_number_setting(kKey, "n", 2));
}

TEST_F(SettingsStore, GoesBackToTheFileOfTheEnvironment) {
  const std::optional<std::string> before = platform::environment_variable("PVMTAFILTER_SETTINGS");
  platform::set_environment_variable("PVMTAFILTER_SETTINGS", directory_.path("environment"));
  platform::use_settings_file({});
  EXPECT_EQ(platform::settings_location(), directory_.path("environment"));
  platform::forget_settings();
  EXPECT_EQ(platform::settings_location(), directory_.path("environment"));
  platform::set_environment_variable("PVMTAFILTER_SETTINGS", before.value_or(""));
}

TEST_F(SettingsStoreConcurrent, ThreadsLoseNoWriteAndNeverReadHalfAFile) {
  write("dword:1");
  std::atomic<bool> written = false;
  std::atomic<int> failed = 0;
  std::atomic<int> misread = 0;
  const auto read = [&] {
    while (!written) misread += read_number_setting(kKey, "n") != 1U;
  };
  std::thread readers[] = {std::thread(read), std::thread(read)};
  std::vector<std::thread> writers;
  for (const char* writer : {"a", "b", "c"}) {
    writers.emplace_back([&, writer] { failed += test::write_numbers(writer); });
  }
  for (std::thread& writer : writers) writer.join();
  written = true;
  for (std::thread& reader : readers) reader.join();
  EXPECT_EQ(failed, 0);
  EXPECT_EQ(misread, 0);
  for (const char* writer : {"a", "b", "c"}) test::expect_numbers(writer);
}

}  // namespace
}  // namespace pv
