#include "platform/script_control.h"

#include <gtest/gtest.h>

#include "script/script_control_source.h"

namespace pv {
namespace {

TEST(ScriptControl, ThisSystemHasNone) {
  std::int32_t failure = 0;
  EXPECT_EQ(new_script_control(failure), nullptr);
  EXPECT_EQ(static_cast<std::uint32_t>(failure), 0x80040154U);
  EXPECT_EQ(platform::script_failure_text(failure), "Class not registered");
}

}  // namespace
}  // namespace pv
