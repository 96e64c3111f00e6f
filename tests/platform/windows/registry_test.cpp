#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/environment.h"
#include "platform/settings_store.h"

namespace pv {
namespace {

using namespace std::string_literals;
using platform::read_number_setting;
using platform::read_text_setting;
using platform::write_number_setting;
using platform::write_text_setting;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

class Registry : public testing::Test {
 protected:
  Registry() : before_(platform::environment_variable("PVMTAFILTER_SETTINGS")) {
    platform::set_environment_variable("PVMTAFILTER_SETTINGS", "");
    platform::use_settings_file({});
  }
  ~Registry() override {
    close();
    HKEY software = nullptr;
    const LSTATUS opened =
        ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, "SOFTWARE", 0, KEY_ALL_ACCESS | KEY_WOW64_32KEY, &software);
    EXPECT_EQ(opened, ERROR_SUCCESS);
    ::RegDeleteTreeA(software, name_.c_str());
    ::RegCloseKey(software);
    platform::set_environment_variable("PVMTAFILTER_SETTINGS", before_.value_or(""));
    platform::use_settings_file({});
  }

  // The key as the system has it, made when it is missing.
  HKEY key() {
    if (opened_ == nullptr) {
      const LSTATUS made = ::RegCreateKeyExA(HKEY_LOCAL_MACHINE, path_.c_str(), 0, nullptr, 0,
                                             KEY_ALL_ACCESS | KEY_WOW64_32KEY, nullptr, &opened_, nullptr);
      EXPECT_EQ(made, ERROR_SUCCESS);
    }
    return opened_;
  }
  void close() {
    if (opened_ != nullptr) ::RegCloseKey(opened_);
    opened_ = nullptr;
  }
  bool exists(REGSAM view) const {
    HKEY found = nullptr;
    if (::RegOpenKeyExA(HKEY_LOCAL_MACHINE, path_.c_str(), 0, KEY_READ | view, &found) != ERROR_SUCCESS) return false;
    ::RegCloseKey(found);
    return true;
  }
  void set(const std::string& name, DWORD type, const std::string& bytes) {
    const auto* const data = reinterpret_cast<const BYTE*>(bytes.data());
    const LSTATUS done = ::RegSetValueExA(key(), name.c_str(), 0, type, data, static_cast<DWORD>(bytes.size()));
    EXPECT_EQ(done, ERROR_SUCCESS) << name;
  }
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    EXPECT_TRUE(platform::for_each_setting_name(path_, [&](std::string_view name) {
      names.emplace_back(name);
      return true;
    }));
    return names;
  }

  const std::string name_ = "Post Vane Test " + std::to_string(platform::process_id());
  const std::string path_ = R"(SOFTWARE\)" + name_ + R"(\Post Vane)";

 private:
  const std::optional<std::string> before_;
  HKEY opened_ = nullptr;
};

struct ValueCase {
  const char* what;
  DWORD type;
  std::string bytes;
  std::size_t capacity;
  std::optional<std::string> text;
  std::optional<std::uint32_t> number;
};

const ValueCase kValues[] = {
    {"a text that just fits", REG_SZ, "abc\0"s, 4, "abc", std::nullopt},
    {"a text that is too long by one", REG_SZ, "abcd\0"s, 4, std::nullopt, std::nullopt},
    {"an empty text", REG_SZ, "\0"s, 1, "", std::nullopt},
    {"a text of no bytes", REG_SZ, "", 8, "", std::nullopt},
    {"a text that ends early", REG_SZ, "ab\0cd\0"s, 8, "ab", std::nullopt},
    {"bytes beyond ASCII", REG_SZ, "\xE9\xFC\0"s, 8, "\xE9\xFC", std::nullopt},
    {"a reference that is not followed", REG_EXPAND_SZ, "%PATH%\0"s, 8, "%PATH%", std::nullopt},
    {"the first of several texts", REG_MULTI_SZ, "a\0b\0\0"s, 8, "a", std::nullopt},
    {"a number", REG_DWORD, "\x2A\0\0\x80"s, 8, std::nullopt, 0x8000002AU},
    {"four bytes of another type", REG_BINARY, "\1\2\3\4", 8, std::nullopt, 0x04030201U},
    {"three bytes", REG_BINARY, "\1\2\3", 8, std::nullopt, std::nullopt},
    {"a longer number", REG_QWORD, "\1\0\0\0\0\0\0\0"s, 8, std::nullopt, std::nullopt},
};

TEST_F(Registry, ReadsTextsAndNumbersByTypeAndSize) {
  for (const ValueCase& c : kValues) {
    set(c.what, c.type, c.bytes);
    std::array<char, 8> out{};
    const auto size = read_text_setting(path_, c.what, std::span(out).first(c.capacity));
    EXPECT_EQ(size ? std::optional(std::string(out.data(), *size)) : std::nullopt, c.text) << c.what;
    EXPECT_EQ(read_number_setting(path_, c.what), c.number) << c.what;
  }
}

TEST_F(Registry, ATextNeedsNoTerminatingNul) {
  // What stands behind the text keeps the system from adding the NUL itself.
  constexpr wchar_t kText[] = L"abcX";
  ASSERT_EQ(::RegSetValueExW(key(), L"open", 0, REG_SZ, reinterpret_cast<const BYTE*>(kText), 3 * sizeof(wchar_t)),
            ERROR_SUCCESS);
  std::array<char, 5> out{'-', '-', '-', '-', '-'};
  EXPECT_EQ(read_text_setting(path_, "open", std::span(out).first(3)), std::nullopt);
  EXPECT_EQ(read_text_setting(path_, "open", std::span(out).first(4)), 3U);
  EXPECT_EQ(std::string_view(out.data(), 5), "abc--");
}

TEST_F(Registry, WhatNamesNothingIsMissing) {
  set("n", REG_DWORD, "\1\0\0\0"s);
  std::array<char, 8> out{};
  EXPECT_EQ(read_number_setting(path_, "other"), std::nullopt);
  EXPECT_EQ(read_number_setting(path_ + "\\other", "n"), std::nullopt);
  EXPECT_EQ(read_number_setting(path_, std::string_view("n\0x", 3)), std::nullopt);
  EXPECT_EQ(read_number_setting(path_ + std::string("\0x", 2), "n"), std::nullopt);
  EXPECT_EQ(read_number_setting("", "n"), std::nullopt);
  EXPECT_EQ(read_text_setting(path_, "other", out), std::nullopt);
  EXPECT_FALSE(write_number_setting("", "n", 1));
  EXPECT_FALSE(write_number_setting(path_, std::string_view("n\0x", 3), 2));
  EXPECT_FALSE(platform::for_each_setting_name(path_ + "\\other", [](std::string_view) { return true; }));
  EXPECT_EQ(read_number_setting(path_, "N"), 1U) << "nothing was written beside the name";
}

TEST_F(Registry, WritesCreateTheKeyInThe32BitView) {
  EXPECT_FALSE(exists(KEY_WOW64_32KEY));
  EXPECT_TRUE(write_number_setting(path_ + R"(\Counters)", "n", 7));
  EXPECT_TRUE(write_number_setting(path_ + R"(\Counters)", "N", 8));
  EXPECT_TRUE(exists(KEY_WOW64_32KEY));
  constexpr bool kHasTwoViews = sizeof(void*) == 8;  // a 32-bit program may run on a system with one
  EXPECT_EQ(exists(KEY_WOW64_64KEY) && kHasTwoViews, false);
  EXPECT_EQ(read_number_setting(path_ + R"(\COUNTERS\)", "n"), 8U);

  EXPECT_TRUE(write_text_setting(path_, "t", std::string_view("text\0cut", 8)));
  std::array<char, 5> out{};
  EXPECT_EQ(read_text_setting(path_, "t", out), 4U);
  EXPECT_EQ(std::string_view(out.data()), "text");
  DWORD type = 0;
  DWORD size = 0;
  EXPECT_EQ(::RegQueryValueExA(key(), "t", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
  EXPECT_EQ(type, DWORD{REG_SZ});
  EXPECT_EQ(size, 5U) << "with its NUL";
}

TEST_F(Registry, Wow6432NodeIsTheSameKey) {
  set("n", REG_DWORD, "\5\0\0\0"s);
  const std::string other = R"(Software\WOW6432Node\)" + name_ + R"(\Post Vane)";
  EXPECT_EQ(read_number_setting(other, "n"), 5U);
  EXPECT_TRUE(write_number_setting(other, "n", 6));
  EXPECT_EQ(read_number_setting(path_, "n"), 6U);
}

struct KeyCase {
  const char* what;
  std::string name;  // of the key that is chosen
  bool is_key;
};

TEST_F(Registry, AChosenKeyStandsInThePlaceOfTheServers) {
  const KeyCase kKeys[] = {
      {"in full", R"(HKEY_LOCAL_MACHINE\)" + path_, true},
      {"for short, in any letter case", R"(hklm\)" + path_ + '\\', true},
      {"by its place in the 64-bit view", R"(HKLM\SOFTWARE\WOW6432Node\)" + name_ + R"(\Post Vane)", true},
      {"a root alone", R"(HKEY_LOCAL_MACHINE\)", false},
      {"another root", R"(HKEY_USERS\)" + path_, false},
      {"a file", R"(C:\HKLM\)" + path_, false},
      {"a NUL", R"(HKLM\)" + path_ + std::string("\0x", 2), false},
  };
  set("n", REG_DWORD, "\5\0\0\0"s);
  for (const KeyCase& c : kKeys) {
    EXPECT_EQ(platform::is_registry_key(c.name), c.is_key) << c.what;
    platform::use_settings_file(c.name);
    const auto expected = c.is_key ? std::optional(5U) : std::nullopt;
    EXPECT_EQ(read_number_setting(R"(Software\Post Vane\POST VANE)", "n"), expected) << c.what;
  }
}

TEST_F(Registry, AChosenKeyHoldsWhatIsWrittenAndNothingOfOtherKeys) {
  platform::set_environment_variable("PVMTAFILTER_SETTINGS", R"(HKLM\)" + path_);
  platform::use_settings_file({});
  EXPECT_EQ(platform::settings_location(), R"(HKLM\)" + path_ + " (32-bit view)");
  EXPECT_TRUE(write_number_setting(R"(SOFTWARE\Post Vane\Post Vane\Counters)", "n", 7));
  EXPECT_TRUE(write_text_setting(R"(SOFTWARE\Post Vane\Post Vane)", "t", "text"));
  EXPECT_EQ(read_number_setting(path_ + R"(\Counters)", "n"), 7U);
  EXPECT_EQ(read_number_setting(R"(SOFTWARE\Post Vane\Post Vane2)", "n"), std::nullopt);

  const auto all = platform::all_settings();
  ASSERT_TRUE(all);
  EXPECT_THAT(all->key_order,
              ElementsAre(R"(SOFTWARE\Post Vane\Post Vane)", R"(SOFTWARE\Post Vane\Post Vane\Counters)"));
  EXPECT_EQ(*all->find(R"(SOFTWARE\Post Vane\Post Vane\Counters)", "N"), platform::SettingValue(7U));
  EXPECT_EQ(*all->find(R"(SOFTWARE\Post Vane\Post Vane)", "t"), platform::SettingValue("text"));
}

TEST_F(Registry, NamesAreGivenUntilEnoughWereSeen) {
  const std::string longest(255, 'l');
  set(longest, REG_SZ, "\0"s);
  set(std::string(256, 'x'), REG_SZ, "\0"s);
  set("10.0.0.*", REG_DWORD, "\1\0\0\0"s);
  EXPECT_THAT(names(), UnorderedElementsAre(longest, "10.0.0.*"));
  int seen = 0;
  EXPECT_TRUE(platform::for_each_setting_name(path_, [&](std::string_view) { return ++seen < 1; }));
  EXPECT_EQ(seen, 1);
}

}  // namespace
}  // namespace pv
