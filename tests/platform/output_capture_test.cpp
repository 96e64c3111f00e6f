#include "platform/output_capture.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "platform/library.h"

namespace pv {
namespace {

using platform::OutputCapture;

TEST(OutputCapture, CatchesWhatLoadedLibrariesPrint) {
  const auto plugin = platform::Library::load(PV_TEST_PLUGIN);
  ASSERT_TRUE(plugin);
  void (*const print)() = plugin->find<void()>("plugin_print");
  ASSERT_NE(print, nullptr);
  OutputCapture outer;
  {
    std::printf("before ");
    OutputCapture inner;
    std::printf("printed\n");
    print();
    EXPECT_EQ(inner.take(), "printed\nthe plug-in's\n");
    EXPECT_EQ(inner.take(), "");
    std::printf("after");
  }
  EXPECT_EQ(outer.take(), "before after");
}

TEST(OutputCapture, HoldsAnyAmountAndEndsWithItsLife) {
  OutputCapture outer;
  const std::string large(200000, 'x');
  {
    const OutputCapture forgotten;
    std::printf("lost");
  }
  std::printf("%s", large.c_str());
  EXPECT_EQ(outer.take(), large);
}

}  // namespace
}  // namespace pv
