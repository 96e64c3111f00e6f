#include "platform/directory.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/server_tree.h"

namespace pv {
namespace {

TEST(FindFirstEntry, LinksAreWhatTheyLeadTo) {
  const test::TemporaryDirectory directory;
  directory.write("file", "12345");
  std::filesystem::create_symlink("nowhere", directory.path("dangling"));
  std::filesystem::create_symlink("file", directory.path("link"));
  EXPECT_EQ(platform::find_first_entry(directory.path("dangling*")), std::nullopt);
  EXPECT_EQ(platform::find_first_entry(directory.path("lin?"))->size_bytes, 5u);
}

}  // namespace
}  // namespace pv
