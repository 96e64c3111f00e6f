#include "platform/paths.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "platform/system_error.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::creatable_path;
using platform::existing_path;
using test::TemporaryDirectory;

// With this system's separators.
std::string native(std::string text) {
  std::replace(text.begin(), text.end(), '/', platform::kPathSeparator);
  return text;
}

TEST(JoinPath, KeepsEmptyComponents) {
  EXPECT_EQ(platform::join_path({"q", "SMTP", "A"}), native("q/SMTP/A"));
  EXPECT_EQ(platform::join_path({"q", "", "A"}), native("q//A"));
  EXPECT_EQ(platform::join_path({"A"}), "A");
}

struct ExistenceCase {
  const char* what;
  const char* path;  // below the temporary directory
  bool exists;
};

// Entries: Queues/SMTP/Inbound.TXT  Hidden/
constexpr ExistenceCase kExistence[] = {
    {"as spelt", "Queues/SMTP/Inbound.TXT", true},
    {"every component in another case", "QUEUES/smtp/inbound.txt", true},
    {"Windows separators", "queues\\smtp\\INBOUND.txt", true},
    {"doubled separators", "queues//smtp\\\\inbound.txt", true},
    {"upwards", "queues/smtp/../SMTP", true},
    {"a directory with a trailing separator", "queues/smtp/", true},
    {"a file with a trailing separator", "queues/smtp/inbound.txt/", false},
    {"a part of a name", "queues/smt", false},
    {"a file where a directory should be", "queues/smtp/inbound.txt/x", false},
    {"nothing of that name", "hidden/x", false},
};

TEST(Paths, NameEntriesInAnyCaseWithEitherSeparator) {
  const TemporaryDirectory directory;
  directory.write("Queues/SMTP/Inbound.TXT", "x");
  directory.make_directory("Hidden");
  for (const ExistenceCase& c : kExistence) {
    const auto found = existing_path(directory.path() + "/" + c.path);
    ASSERT_EQ(found.has_value(), c.exists) << c.what;
    EXPECT_TRUE(!found || std::filesystem::exists(*found)) << *found;
  }
}

TEST(Paths, RelativePathsStartAtTheCurrentDirectory) {
  const TemporaryDirectory directory;
  directory.write("Sub/File", "x");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(directory.path());
  EXPECT_EQ(existing_path("Sub/File"), native("Sub/File"));
  EXPECT_TRUE(existing_path("SUB"));
  EXPECT_EQ(creatable_path("new"), "new");
  std::filesystem::current_path(before);
}

TEST(Paths, WhatTheSystemCannotTakeWholeNamesNothing) {
  const TemporaryDirectory directory;
  directory.write("file", "x");
  const std::string file = directory.path("file");
  for (const std::string& path : {file + '\0' + ".mai", file + '\0', std::string(40000, '/'), std::string()}) {
    EXPECT_EQ(existing_path(path), std::nullopt);
    EXPECT_EQ(platform::last_system_error(), 2);
    EXPECT_EQ(creatable_path(path), "") << "creating it must fail, not make a file of another name";
  }
}

}  // namespace
}  // namespace pv
