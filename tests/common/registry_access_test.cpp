#include "common/registry_access.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/server_tree.h"

namespace pv {
namespace {

TEST(RegistryAccess, TextsAreReadWholeOrNotAtAll) {
  const test::ServerTree tree;
  for (const std::size_t length : {0U, 1023U, 1024U}) {
    const std::string value(length, 'x');
    tree.set_text(kRootKey, "Mail Root", value);
    BoundedText<1024> out;
    ASSERT_TRUE(out.assign("preset"));
    EXPECT_EQ(reg_read_string(kRootKey, "Mail Root", out), length == 1023);
    EXPECT_EQ(out.view(), length == 1023 ? value : "") << length;
  }
}

struct NumberCase {
  const char* what;
  std::string_view key;
  std::string_view name;
  bool read;
  std::uint32_t number;
};
constexpr NumberCase kNumbers[] = {
    {"a number", kAgentKey, "Reload", true, 4000000000},
    {"another spelling of key and name", R"(software\wow6432node\post vane\post vane\agents\mta\filters\MTAFilter)",
     "RELOAD", true, 4000000000},
    {"a text where a number is read", kAgentKey, "Activity Log Directory", false, 7},
    {"a missing value", kAgentKey, "No Such Value", false, 7},
};

TEST(RegistryAccess, NumbersThatCannotBeReadLeaveThePreset) {
  const test::ServerTree tree;
  ASSERT_TRUE(reg_write_dword(kAgentKey, "Reload", 4000000000));
  for (const NumberCase& c : kNumbers) {
    std::uint32_t number = 7;
    EXPECT_EQ(reg_read_dword(c.key, c.name, number), c.read) << c.what;
    EXPECT_EQ(number, c.number) << c.what;
  }
}

TEST(RegistryAccess, ApplicationDirectoryOfTheOtherWordSize) {
  const test::ServerTree tree;
  BoundedText<1024> out;
  EXPECT_TRUE(reg_read_app_directory(out, 64));
  EXPECT_EQ(out.view(), tree.path("app") + "64");
  tree.set_text(kRootKey, "Application Directory", std::string(1022, 'x'));
  EXPECT_FALSE(reg_read_app_directory(out, 64)) << "a cut path would name another directory";
  EXPECT_EQ(out.view(), "");
}

}  // namespace
}  // namespace pv
