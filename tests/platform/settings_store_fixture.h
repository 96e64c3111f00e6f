// A settings file of the test's own, chosen as the process's settings.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/settings_store.h"
#include "support/server_tree.h"

namespace pv::test {

inline constexpr char kKey[] = R"(SOFTWARE\Post Vane)";
inline constexpr char kFile[] = "settings.reg";

inline std::string file_with(std::string_view value) {
  return "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Post Vane]\n; a comment\n\"n\"=" + std::string(value) + "\n";
}

class SettingsStore : public testing::Test {
 protected:
  SettingsStore() { platform::use_settings_file(directory_.path(kFile)); }
  ~SettingsStore() override { platform::use_settings_file({}); }

  void write(std::string_view value) const { directory_.write(kFile, file_with(value)); }

  TemporaryDirectory directory_;
};

// Two writers at once must lose none of each other's numbers.
inline constexpr std::uint32_t kWrites = 15;

// How many of a writer's writes failed.
inline int write_numbers(const std::string& writer) {
  int failed = 0;
  for (std::uint32_t i = 0; i < kWrites; ++i) {
    failed += !platform::write_number_setting(kKey, writer + std::to_string(i), i);
  }
  return failed;
}

inline void expect_numbers(const std::string& writer) {
  for (std::uint32_t i = 0; i < kWrites; ++i) {
    EXPECT_EQ(platform::read_number_setting(kKey, writer + std::to_string(i)), i) << writer << i;
  }
}

}  // namespace pv::test
