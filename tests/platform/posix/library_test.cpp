// Which file a name stands for, and whether it is really unloaded.
#include "platform/library.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

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

// Entries: Plugins/pvfltmbf.so  Plugins/Native.DLL  broken.so  broken.dll (loadable)  fifo.so  directory.so/
constexpr LoadCase kLoads[] = {
    {"the .so of a .DLL in another case", "Plugins/PVFLTMBF.DLL", true},
    {"the extension and the directory in another case", "plugins\\Pvfltmbf.dll", true},
    {"a name as it stands", "Plugins/PVFLTMBF.so", true},
    {"a .DLL without a .so", "Plugins/native.dll", true},
    {"a .so that cannot be loaded beside a .dll that can", "BROKEN.DLL", true},
    {"a file that is no library", "broken.so", false},
    {"nothing of that name", "Plugins/PVWINDNS.DLL", false},
    {"a system library in a directory that lacks it", "libm.so.6", false},
    {"a directory", "directory.so", false},
    {"a FIFO", "FIFO.DLL", false},
};

class LibraryFiles : public testing::Test {
 protected:
  LibraryFiles() {
    directory_.write("broken.so", "no library");
    directory_.make_directory("Plugins");
    directory_.make_directory("directory.so");
    for (const char* name : {"Plugins/pvfltmbf.so", "Plugins/Native.DLL", "broken.dll"}) {
      fs::copy_file(PV_TEST_PLUGIN, directory_.path(name));
    }
    ::mkfifo(directory_.path("fifo.so").c_str(), 0600);
  }

  TemporaryDirectory directory_;
};

TEST_F(LibraryFiles, FindsTheFileThatStandsForTheName) {
  for (const LoadCase& c : kLoads) {
    std::string reason;
    const auto library = Library::load(directory_.path() + "/" + c.path, &reason);
    ASSERT_EQ(library.has_value(), c.loads) << c.what << ": " << reason;
    EXPECT_EQ(reason.empty(), c.loads) << c.what;
    if (!library) continue;
    int (*const number)() = library->find<int()>("plugin_number");
    ASSERT_NE(number, nullptr) << c.what;
    EXPECT_EQ(number(), 42) << c.what;
    EXPECT_EQ(library->find<int()>("no_such_function"), nullptr);
  }
}

TEST_F(LibraryFiles, DestroyingUnloads) {
  const std::string path = directory_.path("Plugins/pvfltmbf.so");
  auto library = Library::load(path);
  ASSERT_TRUE(library);
  auto moved = std::optional(std::move(*library));
  library.reset();
  void* again = ::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  EXPECT_NE(again, nullptr) << "moved away, so still loaded";
  if (again) ::dlclose(again);
  moved.reset();
  EXPECT_EQ(::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST_F(LibraryFiles, NamesWithoutADirectoryAreTheSystems) {
  const auto before = fs::current_path();
  fs::current_path(directory_.path("Plugins"));
  EXPECT_FALSE(Library::load("pvfltmbf.so")) << "the current directory may be anybody's";
  fs::current_path(before);
  EXPECT_TRUE(Library::load("libm.so.6"));
  EXPECT_FALSE(Library::load(""));
  EXPECT_FALSE(Library::load(std::string_view("libm.so.6\0x", 11)));
}

}  // namespace
}  // namespace pv
