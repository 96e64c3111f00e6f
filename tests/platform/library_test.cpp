#include "platform/library.h"

#include <gtest/gtest.h>

#include "pvmtafilter/plugin.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::Library;

TEST(Library, FindsFunctionsOfBothCallingConventions) {
  const auto library = Library::load(PV_TEST_PLUGIN);
  ASSERT_TRUE(library);
  int (*const number)() = library->find<int()>("plugin_number");
  ASSERT_NE(number, nullptr);
  EXPECT_EQ(number(), 42);
  using Difference = int32_t PV_CALL(int32_t, int32_t);
  Difference* const difference = library->find<Difference>("plugin_difference");
  ASSERT_NE(difference, nullptr);
  EXPECT_EQ(difference(50, 8), 42);
  EXPECT_EQ(library->find<int()>("no_such_function"), nullptr);
}

TEST(Library, WhatIsNoLibraryGivesTheReason) {
  const test::TemporaryDirectory directory;
  directory.write("broken.dll", "no library");
  directory.make_directory("directory.dll");
  for (const std::string& path : {directory.path("broken.dll"), directory.path("directory.dll"),
                                  directory.path("none.dll"), std::string("pv no such library.dll"), std::string()}) {
    std::string reason;
    EXPECT_FALSE(Library::load(path, &reason)) << path;
    EXPECT_NE(reason, "") << path;
  }
}

}  // namespace
}  // namespace pv
