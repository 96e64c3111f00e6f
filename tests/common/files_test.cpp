#include "common/files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/server_tree.h"

namespace pv {
namespace {

TEST(Files, ExistenceAndSize) {
  const test::TemporaryDirectory directory;
  directory.write("five.txt", "12345");
  directory.make_directory("folder");
  directory.write("huge", "");
  std::filesystem::resize_file(directory.path("huge"), 4294967301ULL);  // a hole: takes no room
  constexpr struct {
    const char* what;
    std::string_view path;
    bool exists;
    std::int32_t size;
  } kEntries[] = {
      {"another letter case", "FIVE.TXT", true, 5},
      {"a wildcard", "f*.txt", true, 5},
      {"a directory", "folder", true, 0},
      {"nothing", "six.txt", false, 0},
      {"a size of more than 32 bits", "huge", true, 2147483647},
  };
  for (const auto& c : kEntries) {
    EXPECT_EQ(file_exists(directory.path(c.path)), c.exists) << c.what;
    EXPECT_EQ(file_size(directory.path(c.path)), c.size) << c.what;
  }
}

TEST(Files, NewMessageFileNames) {
  const BoundedText<37> name = new_message_file_name();
  ASSERT_EQ(name.size(), 36U);
  EXPECT_EQ(name.view().substr(0, 32).find_first_not_of("0123456789ABCDEF"), std::string_view::npos);
  EXPECT_EQ(name.view()[12], '4') << "the version stands first in the third part";
  EXPECT_EQ(name.view().substr(32), ".MAI");
  EXPECT_NE(new_message_file_name().view(), name.view());
}

}  // namespace
}  // namespace pv
