#include "platform/directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/file.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::find_first_entry;
using test::TemporaryDirectory;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

struct SearchCase {
  const char* what;
  const char* path;
  const char* name;  // nullptr: none is found
};

// Entries: Alpha.TXT  beta  gamma.txt.bak  Sub/inner
constexpr SearchCase kSearches[] = {
    {"a name in another case, as stored", "ALPHA.txt", "Alpha.TXT"},
    {"a directory is an entry", "sub", "Sub"},
    {"an ending", "*.txt", "Alpha.TXT"},
    {"a star may stand for nothing", "*beta*", "beta"},
    {"a star must go back", "*.t*.bak", "gamma.txt.bak"},
    {"stars side by side", "b**a", "beta"},
    {"one character", "bet?", "beta"},
    {"a question mark stands for exactly one", "beta?", nullptr},
    {"star dot star finds names without a dot", "*.*", "Alpha.TXT"},
    {"star dot star in a directory in another case", "SUB\\*.*", "inner"},
    {"the whole name must match", "bet", nullptr},
    {"the first in byte order", "*a*", "Alpha.TXT"},
    {"wildcards in the last component only", "S*/inner", nullptr},
    {"a trailing separator", "Sub/", nullptr},
    {"no such directory", "none/*", nullptr},
    {"a file is no directory", "beta/*", nullptr},
};

TEST(FindFirstEntry, ByNameOrWildcard) {
  const TemporaryDirectory directory;
  for (const char* file : {"gamma.txt.bak", "beta", "Alpha.TXT", "Sub/inner"}) directory.write(file, "12345");
  for (const SearchCase& c : kSearches) {
    const auto entry = find_first_entry(directory.path() + "/" + c.path);
    ASSERT_EQ(entry.has_value(), c.name != nullptr) << c.what;
    if (!entry) continue;
    EXPECT_EQ(entry->name, c.name) << c.what;
    EXPECT_EQ(entry->size_bytes, entry->is_directory ? 0u : 5u) << c.what;
  }
  EXPECT_EQ(find_first_entry(""), std::nullopt);
}

TEST(FindFirstEntry, SizesHaveSixtyFourBits) {
  const TemporaryDirectory directory;
  directory.write("file", "");
  std::filesystem::resize_file(directory.path("file"), 5'000'000'000);
  EXPECT_EQ(find_first_entry(directory.path("file"))->size_bytes, 5'000'000'000u);
}

TEST(ForEachEntry, VisitsUntilTold) {
  const TemporaryDirectory directory;
  for (const char* file : {"a", "b", "Sub/c"}) directory.write(file, "");
  std::vector<std::string> names;
  EXPECT_TRUE(platform::for_each_entry(directory.path(), [&](const platform::DirectoryEntry& entry) {
    names.push_back(entry.name + (entry.is_directory ? "/" : ""));
    return true;
  }));
  EXPECT_THAT(names, UnorderedElementsAre("a", "b", "Sub/"));
  int visits = 0;
  EXPECT_TRUE(platform::for_each_entry(directory.path(), [&](const auto&) { return ++visits < 2; }));
  EXPECT_EQ(visits, 2);
  EXPECT_FALSE(platform::for_each_entry(directory.path("none"), [](const auto&) { return true; }));
  EXPECT_FALSE(platform::for_each_entry(directory.path("a"), [](const auto&) { return true; }));
}

TEST(CreateDirectory, OneLevelAndOnce) {
  const TemporaryDirectory directory;
  EXPECT_FALSE(platform::create_directory(directory.path("one/two")));
  EXPECT_TRUE(platform::create_directory(directory.path("One/")));
  EXPECT_FALSE(platform::create_directory(directory.path("ONE")));
  EXPECT_TRUE(platform::create_directory(directory.path() + "\\one\\Two\\"));
  platform::set_file_operation_hook_for_test([](platform::FileOperation) { return true; });
  EXPECT_FALSE(platform::create_directory(directory.path("three")));
  platform::set_file_operation_hook_for_test(nullptr);
  EXPECT_THAT(directory.names(""), ElementsAre("One"));
  EXPECT_THAT(directory.names("One"), ElementsAre("Two"));
}

}  // namespace
}  // namespace pv
