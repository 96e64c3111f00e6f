// Which of several spellings a path names.
#include "platform/paths.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/file.h"
#include "platform/path_parts.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using platform::creatable_path;
using platform::existing_path;
using test::TemporaryDirectory;

struct PathCase {
  const char* what;
  const char* path;      // below the temporary directory
  const char* existing;  // nullptr: none
  const char* creatable;
};

// Entries: Queues/SMTP/Inbound.TXT  Queues/smtp2  Both  BOTH  both  Hidden/  hidden/File
constexpr PathCase kPaths[] = {
    {"as spelt", "Queues/SMTP/Inbound.TXT", "Queues/SMTP/Inbound.TXT", "Queues/SMTP/Inbound.TXT"},
    {"every component in another case", "QUEUES/smtp/inbound.txt", "Queues/SMTP/Inbound.TXT",
     "Queues/SMTP/Inbound.TXT"},
    {"Windows separators", "queues\\smtp\\INBOUND.txt", "Queues/SMTP/Inbound.TXT", "Queues/SMTP/Inbound.TXT"},
    {"Windows separators as spelt", "Queues\\SMTP", "Queues/SMTP", "Queues/SMTP"},
    {"doubled separators", "queues//smtp\\\\inbound.txt", "Queues//SMTP//Inbound.TXT", "Queues//SMTP//Inbound.TXT"},
    {"upwards", "queues/smtp/../SMTP2", "Queues/SMTP/../smtp2", "Queues/SMTP/../smtp2"},
    {"a trailing separator of a directory", "queues/smtp/", "Queues/SMTP/", "Queues/SMTP/"},
    {"a trailing separator of a file", "queues/smtp/inbound.txt/", nullptr, "queues/smtp/inbound.txt/"},
    {"of several the exact one", "both", "both", "both"},
    {"of several none exact: the first in byte order", "bOTH", "BOTH", "BOTH"},
    {"an exact directory hides the file in another one", "Hidden/File", nullptr, "Hidden/File"},
    {"a part of a name is no match", "queues/smt", nullptr, "Queues/smt"},
    {"a new file keeps its spelling", "QUEUES/SMTP/NEW.Mai", nullptr, "Queues/SMTP/NEW.Mai"},
    {"no such directory", "none\\new.mai", nullptr, "none/new.mai"},
    {"a file where a directory should be", "both/x", nullptr, "both/x"},
};

TEST(Paths, AreLookedUpWithoutRegardToCase) {
  const TemporaryDirectory directory;
  for (const char* file : {"Queues/SMTP/Inbound.TXT", "Queues/smtp2", "both", "BOTH", "Both", "hidden/File"}) {
    directory.write(file, "x");
  }
  directory.make_directory("Hidden");
  const std::string root = directory.path() + "/";
  for (const PathCase& c : kPaths) {
    const auto expected = c.existing ? std::optional(root + c.existing) : std::nullopt;
    EXPECT_EQ(existing_path(root + c.path), expected) << c.what;
    EXPECT_EQ(creatable_path(root + c.path), root + c.creatable) << c.what;
  }
}

TEST(Paths, RelativeOnesAreSpeltAsStored) {
  const TemporaryDirectory directory;
  directory.write("Sub/File", "x");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(directory.path());
  EXPECT_EQ(existing_path("sub/FILE"), "Sub/File");
  EXPECT_EQ(existing_path("SUB"), "Sub");
  std::filesystem::current_path(before);
}

// That a name is absent is remembered until its directory changes.
TEST(ExistingPath, FindsWhatAppearsAfterItWasFoundMissing) {
  const TemporaryDirectory directory;
  const std::string path = directory.path() + "/Table.TAB";
  const auto opens = [&] { return platform::InputFile().open(path, platform::FileMode::kText); };
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!platform::known_to_name_nothing(path)) {  // which it is once the directory has been at rest for a moment
    ASSERT_FALSE(opens());
    ASSERT_LT(std::chrono::steady_clock::now(), deadline);
  }
  EXPECT_FALSE(opens());
  for (const char* name : {"/Table.TAB", "/TABLE.tab", "/tABLE.TAB"}) {
    const std::string made = directory.path() + name;
    std::ofstream(made) << "x";
    EXPECT_TRUE(opens()) << name;
    std::filesystem::remove(made);
    EXPECT_FALSE(opens()) << name;
  }
}

}  // namespace
}  // namespace pv
