#include "platform/library.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "support/server_tree.h"

namespace pv {
namespace {

namespace fs = std::filesystem;
using platform::Library;
using test::TemporaryDirectory;

struct LoadCase {
  const char* what;
  const char* path;
  bool loads;
};

// Entries: Plugins/PVFLTMBF.DLL  Plugins/other.so
constexpr LoadCase kLoads[] = {
    {"as spelt", "Plugins\\PVFLTMBF.DLL", true},
    {"in another case, with posix separators", "plugins/pvfltmbf.dll", true},
    {"without its extension", "Plugins/PVFLTMBF", true},
    {"another extension", "Plugins/other.so", true},
    {"no other extension is tried", "Plugins/other.dll", false},
};

TEST(Library, IsLoadedByItsNameAsItStands) {
  const TemporaryDirectory directory;
  directory.make_directory("Plugins");
  fs::copy_file(PV_TEST_PLUGIN, directory.path("Plugins/PVFLTMBF.DLL"));
  fs::copy_file(PV_TEST_PLUGIN, directory.path("Plugins/other.so"));
  for (const LoadCase& c : kLoads) {
    std::string reason;
    EXPECT_EQ(Library::load(directory.path() + "/" + c.path, &reason).has_value(), c.loads) << c.what << ": " << reason;
  }
}

TEST(Library, DestroyingUnloadsUnlessItIsToStay) {
  const TemporaryDirectory directory;
  fs::copy_file(PV_TEST_PLUGIN, directory.path("goes.dll"));
  auto library = Library::load(directory.path("goes.dll"));
  ASSERT_TRUE(library);
  auto moved = std::optional(std::move(*library));
  library.reset();
  EXPECT_NE(::GetModuleHandleA("goes.dll"), nullptr) << "moved away, so still loaded";
  moved.reset();
  EXPECT_EQ(::GetModuleHandleA("goes.dll"), nullptr);

  auto kept = Library::load("winmm.dll");
  ASSERT_TRUE(kept);
  kept->keep_loaded();
  kept.reset();
  EXPECT_NE(::GetModuleHandleA("winmm.dll"), nullptr);
}

}  // namespace
}  // namespace pv
